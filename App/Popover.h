#pragma once

#include "Platform/StatusItem.h"

#include <QObject>

#include <optional>

namespace kelmoth {

/// What shows the panel: beside the status item while there is one, else as a window like any other. Main
/// thread.
class Popover : public QObject {
    Q_OBJECT

public:
    /// Where the panel is to appear.
    enum class Place {
        atItem,    ///< beside the status item, wherever that is
        atPointer, ///< beside the status item, which the pointer is on
        asWindow,  ///< on its own
    };

    virtual bool isShown() const = 0;

    /// Whether it was last shown as a window like any other: it then stays until it is closed.
    virtual bool isWindow() const = 0;

    /// Whether it comes and goes gradually.
    virtual void setAnimates(bool animates) = 0;

    /// Shows it; where it is shown already it stays. `item` is the status item's frame, where known.
    virtual void show(Place place, const std::optional<ScreenRect> &item) = 0;

    /// Moves it, where it is shown beside the item, to the place that the item has now.
    virtual void follow(const ScreenRect &item) = 0;

    virtual void performClose() = 0;

    /// Makes its window the one that has the keyboard, in front of all others.
    virtual void makeKeyAndOrderFront() = 0;

Q_SIGNALS:
    void willShow();
    void didClose();
};

} // namespace kelmoth
