#pragma once

#include "Core/Device/DeviceState.h"
#include "Core/Device/RazerDevice.h"
#include "Core/HID/HIDMonitor.h"

#include <QCoroTask>

#include <optional>
#include <string>
#include <vector>

namespace kelmoth {

/// What a mouse said of its settings.
struct DeviceReading {
    /// The settings that the reading began with, with everything over them that the mouse answered.
    DeviceState state;
    /// 0 low, 1 medium, 2 high; none when it was not asked for, not answered or unusable.
    std::optional<Int> liftOffLevel;
    /// What the mouse was asked and did not usably answer, in words ("DPI stages", "lighting of logo").
    std::vector<std::string> unanswered;
    /// Whether anything was answered at all.
    bool anyAnswer = false;
};

/// Reads the settings of a mouse over `base`: the DPI stages, and when `full` also the lighting of each zone,
/// the action of each button in the normal layer, and the lift-off distance. One command at a time, in that
/// order; what is not answered keeps its value. Main thread.
QCoro::Task<DeviceReading> readDevice(HIDMonitor *monitor, RazerDevice device, DeviceState base, bool full);

} // namespace kelmoth
