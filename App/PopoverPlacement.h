#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace kelmoth {

/// What is known of the place that a popover belongs to; device-independent pixels.
struct PopoverSurroundings {
    QRect screen;                ///< the whole screen
    QRect available;             ///< without bars and docks, as far as the desktop tells
    std::optional<QRect> item;   ///< the status item's frame
    std::optional<QPoint> click; ///< where the item was clicked
};

/// Below this height, at its usual scale, a panel is of no use.
constexpr int leastHeight = 320;

/// How high something may be that would be `wanted` high where there is room: not higher than the area,
/// unless that is no height to work with.
int heightWithin(const QRect &available, int wanted);

/// Where a popover of this size lies: beside the item, on its inner side, in the middle of it as far as the
/// screen reaches; beside the click when there is no item; else in the corner where desktops keep their
/// status items. Never beyond the available area, for which it may become less high, unless that is too
/// small.
QRect popoverArea(const PopoverSurroundings &surroundings, const QSize &wanted);

} // namespace kelmoth
