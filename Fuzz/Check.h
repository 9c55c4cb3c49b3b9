#pragma once

#include <cstdio>
#include <cstdlib>
#include <source_location>

namespace kelmoth::fuzz {

/// Ends the run with a message when a property does not hold, so that the fuzzer keeps the input.
inline void check(bool holds, const char *property,
                  std::source_location where = std::source_location::current())
{
    if (!holds) {
        std::fprintf(stderr, "%s:%u: does not hold: %s\n", where.file_name(),
                     static_cast<unsigned>(where.line()), property);
        std::abort();
    }
}

} // namespace kelmoth::fuzz
