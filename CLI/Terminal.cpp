#include "CLI/Terminal.h"

#include "Platform/Log.h"

#include <QList>
#include <QString>

#include <array>
#include <cstdlib>
#include <cwchar>
#include <unistd.h>

namespace kelmoth {

namespace {

std::string_view environment(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : std::string_view{};
}

std::string_view sequence(Style style)
{
    static constexpr std::array sequences{"", "\x1b[1m", "\x1b[32m", "\x1b[31m", "\x1b[33m"};
    return sequences[static_cast<std::size_t>(style)];
}

constexpr std::string_view reset = "\x1b[0m";

} // namespace

Terminal Terminal::detect(int descriptor)
{
    Terminal terminal;
    const auto term = environment("TERM");
    terminal.hasColor =
        ::isatty(descriptor) == 1 && environment("NO_COLOR").empty() && !term.empty() && term != "dumb";
    const auto depth = environment("COLORTERM");
    terminal.hasTrueColor = terminal.hasColor && (depth == "truecolor" || depth == "24bit");
    return terminal;
}

std::string Terminal::styled(std::string_view text, Style style) const
{
    auto shown = printable(text);
    const auto start = sequence(style);
    if (!hasColor || start.empty() || shown.empty()) {
        return shown;
    }
    return std::string(start) + shown + std::string(reset);
}

std::string Terminal::swatch(RGBColor color) const
{
    if (!hasTrueColor) {
        return {};
    }
    return "\x1b[48;2;" + std::to_string(color.r) + ';' + std::to_string(color.g) + ';' +
           std::to_string(color.b) + "m  " + std::string(reset) + ' ';
}

std::size_t displayWidth(std::string_view text)
{
    std::size_t width = 0;
    const auto characters = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toUcs4();
    for (const auto character : characters) {
        const int columns = ::wcwidth(static_cast<wchar_t>(character));
        width += columns < 0 ? 1 : static_cast<std::size_t>(columns);
    }
    return width;
}

} // namespace kelmoth
