#pragma once

#include "Core/Device/RawValues.h"

namespace kelmoth {

/// The buttons of the family, in the order in which every control lists them.
enum class MouseButton {
    left,
    right,
    middle,
    forward,
    back,
    dpiUp,
    dpiDown,
    scrollUp,
    scrollDown,
    clutch,
    profile,
};

template <> struct RawValues<MouseButton> {
    /// `label` is English and the key of its translation; `icon` names the symbol shown beside it.
    struct Row {
        std::string_view rawValue;
        std::string_view label;
        std::string_view icon;
    };
    static constexpr std::array table{
        Row{"left", "Left Click", "hand.point.up.left.fill"},
        Row{"right", "Right Click", "hand.point.up.fill"},
        Row{"middle", "Middle Click", "circle.fill"},
        Row{"forward", "Forward", "arrow.right"},
        Row{"back", "Back", "arrow.left"},
        Row{"dpi_up", "DPI Button", "arrow.up.arrow.down"},
        Row{"dpi_down", "Wheel Mode Button", "dial.medium"},
        Row{"scroll_up", "Scroll Up", "chevron.up"},
        Row{"scroll_down", "Scroll Down", "chevron.down"},
        Row{"clutch", "Clutch", "hand.raised.fill"},
        Row{"profile", "Bottom Button", "person.fill"},
    };
};

/// The button's English name, which is also the key of its translation.
constexpr std::string_view label(MouseButton button)
{
    return tableRow(button).label;
}

/// The name of the symbol shown beside the button.
constexpr std::string_view icon(MouseButton button)
{
    return tableRow(button).icon;
}

} // namespace kelmoth
