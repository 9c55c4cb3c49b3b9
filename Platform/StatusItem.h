#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelmoth {

/// A rectangle on the screens, in device-independent pixels of the whole desktop.
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

/// The program's item among those that the desktop keeps in sight. Hosts come and go: the item is shown by
/// whichever there is. Main thread.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    /// Called for each click of the left button.
    virtual void setClickHandler(std::function<void()> handler) = 0;

    /// The menu of the right button, in place of the last one. What a host has read of that keeps its place
    /// and its effect.
    virtual void setMenu(std::vector<MenuEntry> entries) = 0;

    /// The text shown while the pointer rests on the item.
    virtual void setToolTip(const std::string &text) = 0;

    /// How opaque the picture is, 0 to 1. Draws it anew, for the scheme that the desktop has now.
    virtual void setAlphaValue(double alpha) = 0;

    /// Whether a host shows the item now; none while that is not known.
    virtual std::optional<bool> isHosted() const = 0;

    /// Called whenever that or the frame has changed, and maybe when neither has.
    virtual void setHostHandler(std::function<void()> handler) = 0;

    /// Where the item is; none when its host does not tell.
    virtual std::optional<ScreenRect> frame() const = 0;
};

/// Where status items are made.
class StatusBar {
public:
    virtual ~StatusBar() = default;

    /// The program's one item, its picture a mouse.
    virtual std::unique_ptr<StatusItem> statusItem() = 0;
};

} // namespace kelmoth
