#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace kelmoth {

/// The known surroundings of a popover; device-independent pixels.
struct PopoverSurroundings {
    QRect screen;                ///< the whole screen
    QRect available;             ///< without the bars and docks that the desktop reports
    std::optional<QRect> item;   ///< the status item's frame
    std::optional<QPoint> click; ///< where the item was clicked
};

/// Least usable height of a panel at scale 1.
constexpr int leastHeight = 320;

/// The height of a window that is `wanted` high if there is room: limited to the area, but at least
/// `leastHeight`.
int heightWithin(const QRect &available, int wanted);

/// The area of a popover of this size: beside the item on its inner side, centred on it as far as the screen
/// allows; beside the click without an item; else in the corner where desktops place status items. It stays
/// within the available area and is shortened for that, unless the area is too small.
QRect popoverArea(const PopoverSurroundings &surroundings, const QSize &wanted);

} // namespace kelmoth
