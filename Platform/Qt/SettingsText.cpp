#include "Platform/Qt/SettingsText.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace kelmoth {

namespace {

constexpr std::string_view header = "[General]";

/// Characters with their own escape sequence, and its letter.
constexpr std::array<std::pair<char, char>, 9> escapes{{{'\a', 'a'},
                                                        {'\b', 'b'},
                                                        {'\f', 'f'},
                                                        {'\n', 'n'},
                                                        {'\r', 'r'},
                                                        {'\t', 't'},
                                                        {'\v', 'v'},
                                                        {'"', '"'},
                                                        {'\\', '\\'}}};

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r";
    const auto begin = std::min(text.find_first_not_of(blanks), text.size());
    return text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

/// Consumes the digits of a number from the text's front. Its value is a UTF-16 unit.
char16_t takeNumber(std::string_view &text, int base)
{
    const auto isDigit = [base](char c) {
        return base == 16 ? std::isxdigit(static_cast<unsigned char>(c)) != 0 : c >= '0' && c <= '7';
    };
    const auto *const end = std::ranges::find_if_not(text, isDigit);
    const auto length = static_cast<std::size_t>(end - text.begin());
    const auto digits = std::string(text.substr(0, length));
    text.remove_prefix(length);
    return static_cast<char16_t>(std::strtoul(digits.c_str(), nullptr, base));
}

/// Consumes what follows a backslash from the text's front.
QString takeEscaped(std::string_view &text)
{
    if (text.empty()) {
        return {};
    }
    const char letter = text.front();
    if (letter >= '0' && letter <= '7') {
        return QChar(takeNumber(text, 8));
    }
    text.remove_prefix(1);
    if (letter == 'x') {
        return QChar(takeNumber(text, 16));
    }
    const auto *const row = std::ranges::find(escapes, letter, &std::pair<char, char>::second);
    return row == escapes.end() ? QString() : QString(QLatin1Char(row->first));
}

/// Decodes a value; none when it is not a text.
std::optional<std::string> decoded(std::string_view written)
{
    QString text;
    bool isQuoted = false;
    for (auto rest = trimmed(written); !rest.empty();) {
        const auto length = std::min(rest.find_first_of("\"\\,"), rest.size());
        text += QString::fromStdString(std::string(rest.substr(0, length)));
        rest.remove_prefix(length);
        if (rest.empty()) {
            break;
        }
        const char sign = rest.front();
        rest.remove_prefix(1);
        if (sign == '\\') {
            text += takeEscaped(rest);
        } else if (sign == '"') {
            isQuoted = !isQuoted;
        } else if (isQuoted) {
            text += QLatin1Char(sign);
        } else {
            return std::nullopt; // a list
        }
    }
    const bool isMarked = text.startsWith(QLatin1Char('@'));
    if (isMarked && !text.startsWith(QStringLiteral("@@")) && text.endsWith(QLatin1Char(')'))) {
        return std::nullopt; // of another type, such as "@ByteArray()"
    }
    return (text.startsWith(QStringLiteral("@@")) ? text.mid(1) : text).toStdString();
}

std::string encoded(const std::string &value)
{
    if (value.find_first_not_of("0123456789-") == std::string::npos) {
        return value;
    }
    std::string written = value.starts_with('@') ? "\"@" : "\"";
    bool isAfterNumber = false; // a digit would extend the escape
    for (const char character : value) {
        const auto byte = static_cast<unsigned char>(character);
        const auto *const row = std::ranges::find(escapes, character, &std::pair<char, char>::first);
        const bool isNumber =
            row == escapes.end() && (byte < ' ' || (isAfterNumber && std::isxdigit(byte) != 0));
        if (isNumber) {
            std::array<char, 8> number{};
            std::snprintf(number.data(), number.size(), "\\x%x", byte);
            written += number.data();
        } else if (row != escapes.end()) {
            written += {'\\', row->second};
        } else {
            written += character;
        }
        isAfterNumber = isNumber;
    }
    return written + '"';
}

} // namespace

SettingsText::SettingsText(std::string_view text)
{
    bool isGeneral = true; // before the first section, too
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const auto line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const auto content = trimmed(line);
        if (content.starts_with('[')) {
            isGeneral = content == header;
        }
        const auto equals = content.find('=');
        const bool isValue = isGeneral && equals != std::string_view::npos && !content.starts_with(';');
        const auto key = isValue ? trimmed(content.substr(0, equals)) : std::string_view();
        m_lines.push_back({std::string(line), std::string(key)});
    }
}

SettingsText::Values SettingsText::values() const
{
    Values values;
    for (const auto &line : m_lines) {
        if (!line.key.empty()) {
            values[line.key] = decoded(std::string_view(line.text).substr(line.text.find('=') + 1));
        }
    }
    return values;
}

void SettingsText::set(std::string_view key, const std::optional<std::string> &value)
{
    const auto isThis = [&key](const Line &line) { return line.key == key; };
    auto place = std::ranges::find_if(m_lines, isThis);
    if (value) {
        if (place == m_lines.end()) {
            auto section = std::ranges::find(m_lines, header, &Line::text);
            if (section == m_lines.end()) {
                section = m_lines.insert(m_lines.begin(), {std::string(header), {}});
            }
            place = m_lines.insert(section + 1, Line{});
        }
        *place = {std::string(key) + '=' + encoded(*value), std::string(key)};
        ++place;
    }
    m_lines.erase(std::remove_if(place, m_lines.end(), isThis), m_lines.end());
}

std::string SettingsText::text() const
{
    std::string text;
    for (const auto &line : m_lines) {
        text += line.text + '\n';
    }
    return text;
}

} // namespace kelmoth
