#pragma once

#include "Platform/Log.h"

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>

namespace kelmoth {

/// Buffers the latest diagnostic lines for later, or prints each at once. Any thread.
class DiagnosticLog : public Log {
public:
    /// How many lines are kept: about those of a few commands to a mouse that does not answer.
    static constexpr std::size_t capacity = 64;

    /// Lines are printed to `descriptor`, which stays the caller's. With `live` each is printed at once.
    DiagnosticLog(int descriptor, bool live);

    void write(std::string_view line) override;

    /// Prints and clears the buffer.
    void show();

private:
    const int m_descriptor;
    const bool m_live;
    std::mutex m_mutex;
    std::deque<std::string> m_lines;
    std::size_t m_dropped = 0;
};

} // namespace kelmoth
