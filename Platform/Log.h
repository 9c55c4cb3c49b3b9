#pragma once

#include <string>
#include <string_view>

namespace kelmoth {

/// Receives diagnostic lines, one per call.
class Log {
public:
    virtual ~Log() = default;

    /// Writes one line, UTF-8, without its line end. It may hold control characters and invalid UTF-8 (names
    /// come from hardware), which the sink must escape. Any thread.
    virtual void write(std::string_view line) = 0;
};

/// Formats one diagnostic line as printf does and passes it to the installed log. Any thread.
[[gnu::format(printf, 1, 2)]] void log(const char *format, ...);

/// `line` with every control character, line end and byte that is not UTF-8 replaced by a visible stand-in,
/// so that text from hardware can neither control a terminal nor forge a line. Any thread.
std::string printable(std::string_view line);

} // namespace kelmoth
