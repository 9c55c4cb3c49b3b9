#pragma once

#include "Platform/Linux/LinuxHID.h"
#include "Platform/Linux/LinuxUSB.h"
#include "Platform/Simulated/ManualTime.h"
#include "Testbed/MockMouse.h"
#include "Tests/Hardware/MockedMachineTest.h"

#include <QCoreApplication>
#include <QTest>
#include <gmock/gmock.h>

namespace kelmoth {

/// The Linux rooms on a machine whose mice are mocked, in a time that nobody has to wait for.
class HardwareTest : public MockedMachineTest {
protected:
    std::unique_ptr<MockMouse> attachMouse(std::string_view model, MockMouseOptions options = {},
                                           int port = 1)
    {
        auto mouse = std::make_shared<SimulatedMouse>(*SimulatedModel::named(model), time->clock());
        auto attached = std::make_unique<MockMouse>(testbed, std::move(mouse), std::move(options), port);
        attached->attach();
        return attached;
    }

    /// The HID device of a node; none when it is not listed.
    std::shared_ptr<HIDDevice> hidDevice(const std::string &node)
    {
        const auto devices = hid->createManager()->copyDevices();
        const auto found = std::ranges::find(devices, node, &HIDDevice::path);
        return found == devices.end() ? nullptr : *found;
    }

    std::shared_ptr<ManualTime> time = std::make_shared<ManualTime>();
    std::shared_ptr<HidrawNodes> nodes = std::make_shared<HidrawNodes>(time);
    std::shared_ptr<LinuxHIDService> hid = std::make_shared<LinuxHIDService>(nodes);
    std::shared_ptr<LinuxUSBService> usb = std::make_shared<LinuxUSBService>(nodes, time);
};

} // namespace kelmoth
