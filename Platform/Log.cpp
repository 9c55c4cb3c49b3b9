#include "Platform/Log.h"

#include "Platform/Platform.h"

#include <QString>

#include <cstdarg>
#include <cstdio>

namespace kelmoth {

namespace {

/// Whether a character controls a terminal or the order of the text around it instead of being visible.
bool isHarmful(QChar character)
{
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator ||
           (character >= QChar(0x202A) && character <= QChar(0x202E)) || // directional overrides
           (character >= QChar(0x2066) && character <= QChar(0x2069));   // directional isolates
}

} // namespace

void log(const char *format, ...)
{
    const auto &sink = Platform::current().log;
    if (!sink) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string line(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(line.data(), line.size() + 1, format, again);
    va_end(again);
    sink->write(line);
}

std::string printable(std::string_view line)
{
    auto text = QString::fromUtf8(line.data(), static_cast<qsizetype>(line.size()));
    for (QChar &character : text) {
        if (!isHarmful(character)) {
            continue;
        }
        // The Unicode block of control pictures has one for each C0 control.
        const bool hasPicture = character.unicode() < 0x20;
        character = hasPicture ? QChar(0x2400 + character.unicode()) : QChar(QChar::ReplacementCharacter);
    }
    return text.toStdString();
}

} // namespace kelmoth
