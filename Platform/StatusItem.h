#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelmoth {

/// A rectangle in device-independent pixels of the whole desktop.
struct ScreenRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const ScreenRect &) const = default;
};

/// An entry of a menu; a separator when it has no action.
struct MenuEntry {
    std::string title;
    std::function<void()> action;
    std::string keyEquivalent; ///< a letter, with the platform's modifier for commands; none when empty
};

/// The program's status item. Hosts come and go: the current one shows the item. Main thread.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    /// Called for each click of the left button.
    virtual void setClickHandler(std::function<void()> handler) = 0;

    /// Sets the menu of the right button. Entries that a host has already read stay valid by index.
    virtual void setMenu(std::vector<MenuEntry> entries) = 0;

    /// Sets the tooltip.
    virtual void setToolTip(const std::string &text) = 0;

    /// Sets the picture's opacity, 0 to 1. Redraws it for the desktop's current scheme.
    virtual void setAlphaValue(double alpha) = 0;

    /// Whether a host shows the item now; none while unknown.
    virtual std::optional<bool> isHosted() const = 0;

    /// Called after a change of `isHosted` or `frame`, and maybe without one.
    virtual void setHostHandler(std::function<void()> handler) = 0;

    /// The item's rectangle; none when its host does not report it.
    virtual std::optional<ScreenRect> frame() const = 0;
};

/// Creates status items.
class StatusBar {
public:
    virtual ~StatusBar() = default;

    /// Creates the program's item, with a mouse as its picture.
    virtual std::unique_ptr<StatusItem> statusItem() = 0;
};

} // namespace kelmoth
