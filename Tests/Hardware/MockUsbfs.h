#pragma once

#include "Platform/Simulated/SimulatedMouse.h"
#include "Tests/Hardware/MockTestbed.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace kelmoth {

/// What the kernel does on a mouse's node in /dev/bus/usb, as far as libusb asks for it.
class MockUsbfs {
public:
    /// `hasDriver` says of each interface whether a kernel driver holds it.
    MockUsbfs(std::shared_ptr<SimulatedMouse> mouse, std::vector<bool> hasDriver);

    /// What a read of the node gives: the descriptors of the device and its configuration.
    std::vector<std::uint8_t> descriptors() const;

    /// The testbed's thread.
    void handle(MockIoctl &ioctl);

    /// How often a driver was to be detached.
    int driverDetaches() const { return m_driverDetaches; }

private:
    int claim(unsigned interface) const;
    void submit(MockIoctl &ioctl);
    void reap(MockIoctl &ioctl);

    const std::shared_ptr<SimulatedMouse> m_mouse;
    const std::vector<bool> m_hasDriver;
    GObjectPtr<UMockdevIoctlData> m_urb; ///< performed, and not reaped yet
    std::atomic<int> m_driverDetaches = 0;
};

} // namespace kelmoth
