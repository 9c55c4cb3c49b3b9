#pragma once

#include "Platform/Linux/Hidraw.h"
#include "Platform/Linux/UsbfsInterface.h"
#include "Platform/Sleeper.h"
#include "Platform/USB.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace kelmoth {

/// One USB device. Control requests go through libusb if it holds the interface, else through the hidraw node
/// of the interface that the request names, which sends the same packets. A kernel driver is never detached:
/// it drives the user's pointer. Transfer thread.
class LinuxUSBInterface final : public USBDeviceInterface {
public:
    /// Finds the hidraw node of an interface of the device; none while it has none.
    using HidrawFinder = std::function<std::shared_ptr<Hidraw>(std::uint16_t interfaceNumber)>;

    /// `usbNode` is the device's node in /dev/bus/usb.
    LinuxUSBInterface(std::string usbNode, HidrawFinder findHidraw, std::shared_ptr<Sleeper> sleeper);

    int open(std::uint16_t interfaceNumber) override;
    void close() override;
    /// ENOTSUP for an interface that was not opened, and for a request that a hidraw node cannot carry;
    /// ENXIO when the interface has no hidraw node.
    int deviceRequest(const USBControlRequest &request) override;
    int beginExchange() override;
    void endExchange() override;

private:
    std::shared_ptr<Hidraw> hidraw();

    const std::string m_usbNode;
    const HidrawFinder m_findHidraw;
    const std::shared_ptr<Sleeper> m_sleeper;
    std::uint16_t m_interfaceNumber = 0;
    std::unique_ptr<UsbfsInterface> m_claimed; ///< while libusb holds the interface
    std::shared_ptr<Hidraw> m_hidraw;          ///< kept until it fails
    std::shared_ptr<Hidraw> m_held;            ///< the node locked for the current exchange
};

} // namespace kelmoth
