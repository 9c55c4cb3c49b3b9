#include "App/PopoverPlacement.h"

#include <algorithm>
#include <utility>

namespace kelmoth {

namespace {

constexpr int gap = 6;

/// Assumed size of a clicked status item in a bar that the desktop does not report.
constexpr int usualItem = 24;

/// Greatest assumed thickness of such a bar.
constexpr int thickBar = 96;

enum class Edge { top, bottom, left, right };

/// The edge of the screen whose bar the item is in. Bars that the desktop reports come first. A corner
/// belongs to the bar at the top or bottom, which is far more common than one at a side.
Edge edgeOf(const QRect &screen, const QRect &available, const QPoint &item)
{
    for (const auto &[area, thickness] : {std::pair(available, 0), std::pair(screen, thickBar)}) {
        if (item.y() < area.top() + thickness) {
            return Edge::top;
        }
        if (item.y() > area.bottom() - thickness) {
            return Edge::bottom;
        }
        if (item.x() < area.left() + thickness) {
            return Edge::left;
        }
        if (item.x() > area.right() - thickness) {
            return Edge::right;
        }
    }
    return item.y() < screen.center().y() ? Edge::top : Edge::bottom;
}

int clamped(int position, int first, int length, int size)
{
    return std::max(first, std::min(position, first + length - size));
}

QPoint within(const QRect &area, const QPoint &position, const QSize &size)
{
    return {clamped(position.x(), area.left(), area.width(), size.width()),
            clamped(position.y(), area.top(), area.height(), size.height())};
}

/// On the side of the item that faces the middle of the screen.
QPoint besideItem(Edge edge, const QRect &item, const QSize &size)
{
    const QPoint centred(item.x() + (item.width() - size.width()) / 2,
                         item.y() + (item.height() - size.height()) / 2);
    switch (edge) {
    case Edge::top:
        return {centred.x(), item.bottom() + 1 + gap};
    case Edge::bottom:
        return {centred.x(), item.top() - gap - size.height()};
    case Edge::left:
        return {item.right() + 1 + gap, centred.y()};
    case Edge::right:
        break;
    }
    return {item.left() - gap - size.width(), centred.y()};
}

/// At the end of a bar: the right end of a horizontal one, the bottom of a vertical one.
QPoint usualCorner(const QRect &screen, const QRect &available, const QSize &size)
{
    const int above = available.top() - screen.top();
    const int below = screen.bottom() - available.bottom();
    const int left = available.left() - screen.left();
    const int right = screen.right() - available.right();
    const bool isAtSide = above <= 0 && below <= 0 && (left > 0 || right > 0);
    return {isAtSide && left > right ? available.left() + gap : available.right() + 1 - gap - size.width(),
            isAtSide || below > above ? available.bottom() + 1 - gap - size.height() : available.top() + gap};
}

} // namespace

int heightWithin(const QRect &available, int wanted)
{
    return std::max(leastHeight, std::min(wanted, available.height()));
}

QRect popoverArea(const PopoverSurroundings &surroundings, const QSize &wanted)
{
    const auto &[screen, available, item, click] = surroundings;
    const QSize size(wanted.width(), heightWithin(available, wanted.height()));
    auto place = item;
    if (!place && click) {
        place = QRect(*click - QPoint(usualItem, usualItem) / 2, QSize(usualItem, usualItem));
    }
    if (place) {
        const auto edge = edgeOf(screen, available, place->center());
        return {within(available, besideItem(edge, *place, size), size), size};
    }
    return {within(available, usualCorner(screen, available, size), size), size};
}

} // namespace kelmoth
