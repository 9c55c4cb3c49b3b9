#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace kelmoth {

/// UTF-8 text in lower case, by Unicode's rules and independent of the locale.
inline std::string lowercased(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toLower().toStdString();
}

} // namespace kelmoth
