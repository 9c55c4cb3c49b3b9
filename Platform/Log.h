#pragma once

#include <string>
#include <string_view>

namespace kelmoth {

/// Where diagnostic lines go. One call is one line.
class Log {
public:
    virtual ~Log() = default;

    /// Writes one line, UTF-8, without its line end. Control characters and bytes that are not UTF-8 may be
    /// in it (names come from hardware): the sink makes them harmless. Any thread.
    virtual void write(std::string_view line) = 0;
};

/// Formats one diagnostic line as printf does and hands it to the installed log. Any thread.
[[gnu::format(printf, 1, 2)]] void log(const char *format, ...);

/// `line` with every control character, line end and byte that is not UTF-8 replaced by a visible stand-in,
/// so that text from hardware can neither steer a terminal nor forge a second line. Any thread.
std::string printable(std::string_view line);

} // namespace kelmoth
