#pragma once

#include "Platform/StatusItem.h"

#include <QObject>

#include <optional>

namespace kelmoth {

/// Shows the panel: beside the status item if there is one, else as an ordinary window. Main thread.
class Popover : public QObject {
    Q_OBJECT

public:
    /// Where the panel is to appear.
    enum class Place {
        atItem,    ///< beside the status item
        atPointer, ///< beside the status item under the pointer
        asWindow,  ///< as an ordinary window
    };

    virtual bool isShown() const = 0;

    /// Whether it was last shown as an ordinary window, which stays until it is closed.
    virtual bool isWindow() const = 0;

    /// Whether it is animated when it is shown and closed.
    virtual void setAnimates(bool animates) = 0;

    /// Shows it unless it is shown. `item` is the status item's frame, if known.
    virtual void show(Place place, const std::optional<ScreenRect> &item) = 0;

    /// Moves it to the item's new place if it is shown beside the item.
    virtual void follow(const ScreenRect &item) = 0;

    virtual void performClose() = 0;

    /// Gives its window the keyboard focus and raises it.
    virtual void makeKeyAndOrderFront() = 0;

Q_SIGNALS:
    void willShow();
    void didClose();
};

} // namespace kelmoth
