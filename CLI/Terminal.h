#pragma once

#include "Core/Device/RGBSetting.h"

#include <string>
#include <string_view>

namespace kelmoth {

/// The style of a text where colour is wanted.
enum class Style { plain, heading, good, bad, warning };

/// Capabilities of standard output. A plain value.
struct Terminal {
    bool hasColor = false;     ///< escape sequences for colour are supported and wanted
    bool hasTrueColor = false; ///< also those for any 24-bit colour

    /// Detects the capabilities from the descriptor and the environment: colour only on a terminal that is
    /// not "dumb", and not when NO_COLOR is set.
    static Terminal detect(int descriptor);

    /// The text in a style, with control characters made visible.
    std::string styled(std::string_view text, Style style) const;

    /// Two columns of a colour and a space; empty without true colour.
    std::string swatch(RGBColor color) const;
};

/// The width of a text on a terminal: 0 columns for a combining mark, 2 for a wide character. Needs a UTF-8
/// locale (the application object sets one).
std::size_t displayWidth(std::string_view text);

} // namespace kelmoth
