#pragma once

#include "Core/Device/Types.h"

#include <QString>

#include <string>
#include <string_view>

namespace kelmoth {

/// Text of ours, UTF-8, as the panel takes it.
inline QString panelText(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// `value` with so many decimals and a full stop, in every language.
std::string fixedDecimals(double value, int decimals);

/// A whole number with its digits in threes, a space between: 26000 gives "26 000".
std::string formattedDPI(Int dpi);

/// A whole number as short as it can be read: 850 gives "850", 16000 "16K", 2400 "2.4K".
std::string shortDPI(Int dpi);

} // namespace kelmoth
