#pragma once

#include <functional>

namespace kelmoth {

/// Reports presses of the left and right mouse button in other programs and on the desktop. Main thread.
class EventMonitor {
public:
    virtual ~EventMonitor() = default;

    /// Calls the handler for each press from now on. It replaces the last handler.
    virtual void addGlobalMonitor(std::function<void()> handler) = 0;

    /// Removes the handler.
    virtual void removeMonitor() = 0;

    /// Whether the last reported press is held, or was released so recently that its effects in other
    /// programs may still arrive, such as a click on the status item.
    virtual bool isLastPressUnderWay() = 0;

    /// Suspends the monitor while presses are not needed, so that the program sleeps while nothing is shown.
    virtual void setNeeded(bool isNeeded) = 0;
};

} // namespace kelmoth
