#pragma once

#include "Platform/Simulated/ManualTime.h"
#include "Platform/Simulated/MemoryDefaults.h"
#include "Platform/Simulated/SimulatedPlatform.h"
#include "Tests/Core/RecordedLog.h"

#include <gmock/gmock.h>

namespace kelmoth {

using testing::ElementsAre;
using testing::IsEmpty;

/// A machine with simulated mice, in a time that nobody has to wait for.
class SimulatedMachineTest : public testing::Test {
protected:
    using Kind = SimulatedFault::Kind;

    ~SimulatedMachineTest() override { Platform::setCurrent({}); }

    /// The model of a command-line name.
    virtual SimulatedModel simulated(const std::string &name) { return SimulatedModel::named(name).value(); }

    SimulatedMouse &plugIn(const std::string &model)
    {
        mice.push_back(std::make_shared<SimulatedMouse>(simulated(model), time->clock()));
        return *mice.back();
    }

    SimulatedMouse &mouse() const { return *mice.front(); }

    Platform platform() const
    {
        const auto machine = simulatedMachine(mice);
        Platform platform;
        platform.log = log;
        platform.sleeper = time;
        platform.hid = machine.hid;
        platform.usb = machine.usb;
        platform.userDefaults = defaults;
        return platform;
    }

    std::shared_ptr<ManualTime> time = std::make_shared<ManualTime>();
    std::shared_ptr<RecordedLog> log = RecordedLog::install();
    std::shared_ptr<MemoryDefaults> defaults = std::make_shared<MemoryDefaults>();
    std::vector<std::shared_ptr<SimulatedMouse>> mice;
};

} // namespace kelmoth
