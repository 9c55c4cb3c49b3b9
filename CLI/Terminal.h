#pragma once

#include "Core/Device/RGBSetting.h"

#include <string>
#include <string_view>

namespace kelmoth {

/// How a piece of text is shown where colour is wanted.
enum class Style { plain, heading, good, bad, warning };

/// What standard output can show. A plain value.
struct Terminal {
    bool hasColor = false;     ///< escape sequences for colour are understood and wanted
    bool hasTrueColor = false; ///< also those for any 24-bit colour

    /// What the descriptor stands for, and what the environment asks for: colour only on a terminal that is
    /// not "dumb", and not when NO_COLOR is set to anything.
    static Terminal detect(int descriptor);

    /// The text in a style; whatever in it could steer the terminal is made visible.
    std::string styled(std::string_view text, Style style) const;

    /// Two columns of a colour and a space; nothing without true colour.
    std::string swatch(RGBColor color) const;
};

/// The columns that a text takes on a terminal: none for a combining mark, two for a wide character. Needs a
/// UTF-8 locale (the application object sets one).
std::size_t displayWidth(std::string_view text);

} // namespace kelmoth
