#pragma once

#include "Platform/Log.h"

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>

namespace kelmoth {

/// Keeps the latest diagnostic lines until it is known whether anyone wants them, or shows each at once.
/// Any thread.
class DiagnosticLog : public Log {
public:
    /// How many lines are kept: about what a mouse that never answers leaves behind in a few commands.
    static constexpr std::size_t capacity = 64;

    /// `descriptor` is where lines are shown; it stays the caller's. With `live` each is shown as it comes.
    DiagnosticLog(int descriptor, bool live);

    void write(std::string_view line) override;

    /// Shows what was kept, and forgets it.
    void show();

private:
    const int m_descriptor;
    const bool m_live;
    std::mutex m_mutex;
    std::deque<std::string> m_lines;
    std::size_t m_dropped = 0;
};

} // namespace kelmoth
