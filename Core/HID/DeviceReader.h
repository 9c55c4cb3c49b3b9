#pragma once

#include "Core/Device/DeviceState.h"
#include "Core/Device/RazerDevice.h"
#include "Core/HID/HIDMonitor.h"

#include <QCoroTask>

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kelmoth {

/// Items that a mouse did not answer usably.
struct UnansweredItems {
    bool dpiStages = false;
    std::set<RGBZone> zones;
    std::set<MouseButton> buttons;
    bool liftOff = false;

    bool empty() const { return !dpiStages && zones.empty() && buttons.empty() && !liftOff; }

    /// Each in words: "DPI stages", "lighting of logo", "button clutch", "lift-off distance".
    std::vector<std::string> words() const;

    bool operator==(const UnansweredItems &) const = default;
};

/// Items to read.
using DeviceItems = UnansweredItems;

/// Result of reading a mouse's settings.
struct DeviceReading {
    /// The base settings, overwritten by what the mouse answered.
    DeviceState state;
    /// 0 low, 1 medium, 2 high; none when it was not read, not answered or unusable.
    std::optional<Int> liftOffLevel;
    UnansweredItems unanswered;
    /// Whether anything was answered at all.
    bool anyAnswer = false;

    /// The settings without those that the mouse did not answer for.
    DeviceState answered() const;
};

/// Reads the settings of a mouse over `base`: the DPI stages, and when `full` also the lighting of each zone,
/// the action of each button in the normal layer, and the lift-off distance. One command at a time, in that
/// order; items without an answer keep their value. Main thread.
QCoro::Task<DeviceReading> readDevice(HIDMonitor *monitor, RazerDevice device, DeviceState base, bool full);

/// The same for these items only.
QCoro::Task<DeviceReading> readDevice(HIDMonitor *monitor, RazerDevice device, DeviceState base,
                                      DeviceItems items);

} // namespace kelmoth
