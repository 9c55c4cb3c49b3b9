#pragma once

#include <cstdio>
#include <cstdlib>

namespace kelmoth::fuzz {

/// Ends the run with a message when a property does not hold, so that the fuzzer keeps the input.
inline void check(bool holds, const char *property)
{
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", property);
        std::abort();
    }
}

} // namespace kelmoth::fuzz
