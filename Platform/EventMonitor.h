#pragma once

#include <functional>

namespace kelmoth {

/// Hears of presses of the left and right mouse button in other programs and on the bare desktop. Main
/// thread.
class EventMonitor {
public:
    virtual ~EventMonitor() = default;

    /// Calls the handler for each press from now on. One handler; it replaces the last one.
    virtual void addGlobalMonitor(std::function<void()> handler) = 0;

    /// Ends that.
    virtual void removeMonitor() = 0;

    /// Whether the press last reported goes on, or ended so shortly ago that what it brings about elsewhere
    /// may still be on its way: the click on a status item, say, that began with it.
    virtual bool isLastPressUnderWay() = 0;

    /// Lets the monitor rest where nobody asks for presses: the program sleeps while nothing is shown.
    virtual void setNeeded(bool isNeeded) = 0;
};

} // namespace kelmoth
