#pragma once

#include "Core/HID/HIDMonitor.h"
#include "Platform/Simulated/ManualTime.h"
#include "Platform/Simulated/SimulatedPlatform.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <gmock/gmock.h>

namespace kelmoth {

/// A monitor on simulated mice, in a time that nobody has to wait for.
class SimulatedMouseTest : public testing::Test {
protected:
    ~SimulatedMouseTest() override
    {
        monitor.reset();
        Platform::setCurrent({});
    }

    /// Plugs a mouse in and starts to watch; the battery's first reading has then ended.
    void plugIn(std::string_view model)
    {
        mouse = std::make_shared<SimulatedMouse>(*SimulatedModel::named(model), time->clock());
        watch();
        settle();
    }

    /// Starts to watch a machine with the mouse, or with others.
    void watch() { watch({mouse}); }
    void watch(std::vector<std::shared_ptr<SimulatedMouse>> mice)
    {
        const auto machine = simulatedMachine(std::move(mice));
        Platform platform;
        platform.sleeper = time;
        platform.hid = machine.hid;
        platform.usb = machine.usb;
        monitor = std::make_unique<HIDMonitor>(platform);
        monitor->startMonitoring();
    }

    /// Lets everything that was asked of the mouse so far, and what follows from it, come to its end. How
    /// many requests that was.
    std::ptrdiff_t settle()
    {
        constexpr int rounds = 3;
        for (int round = 0; round < rounds; ++round) {
            (void)send(command::prepareLiftOff{}); // waits its turn behind all that is queued now
            QCoreApplication::processEvents();     // an answer that is there at once is not waited for
        }
        time->takePauses();
        return takeAttempts() - rounds;
    }

    RazerDevice device() const { return monitor->connectedDevices().front(); }

    std::optional<Data> send(RazerCommand command)
    {
        return QCoro::waitFor(monitor->send(std::move(command), device()));
    }

    /// How many requests the mouse was sent, or was to be sent, since the last look.
    std::ptrdiff_t takeAttempts()
    {
        return std::ranges::count(mouse->takeTransfers(), true, &SimulatedMouse::Transfer::isSet);
    }

    std::shared_ptr<ManualTime> time = std::make_shared<ManualTime>();
    std::shared_ptr<SimulatedMouse> mouse;
    std::unique_ptr<HIDMonitor> monitor;
};

} // namespace kelmoth
