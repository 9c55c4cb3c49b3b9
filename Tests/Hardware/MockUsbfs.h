#pragma once

#include "Platform/Simulated/SimulatedMouse.h"
#include "Tests/Hardware/MockTestbed.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kelmoth {

/// The kernel's side of a mouse's node in /dev/bus/usb. All but the counters: the testbed's thread.
class MockUsbfs {
public:
    /// `hasDriver` says of each interface whether a kernel driver holds it.
    MockUsbfs(std::shared_ptr<SimulatedMouse> mouse, std::vector<bool> hasDriver, int deviceNumber);

    /// What a read of the node gives: the device descriptor and that of its configuration.
    std::vector<std::uint8_t> descriptors() const;

    void handle(MockIoctl &ioctl);

    int driverDetaches() const { return m_driverDetaches; }
    int claims() const { return m_claims; }

private:
    void connectInfo(MockIoctl &ioctl) const;
    void control(MockIoctl &ioctl) const;
    void claim(MockIoctl &ioctl);
    void submit(MockIoctl &ioctl);
    void reap(MockIoctl &ioctl);
    /// Performs the transfer in a URB's buffer (setup packet and data); gives status and length.
    struct Outcome {
        int status = 0;
        std::size_t length = 0;
    };
    Outcome perform(std::vector<std::uint8_t> &buffer);

    const std::shared_ptr<SimulatedMouse> m_mouse;
    const std::vector<bool> m_hasDriver;
    const int m_deviceNumber;
    GObjectPtr<UMockdevIoctlData> m_urb; ///< submitted
    std::atomic<int> m_driverDetaches = 0;
    std::atomic<int> m_claims = 0;
};

} // namespace kelmoth
