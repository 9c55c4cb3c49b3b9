#pragma once

#include "Platform/Linux/Hidraw.h"
#include "Platform/Sleeper.h"
#include "Platform/USB.h"

#include <memory>

namespace kelmoth {

/// USB devices as udev lists them. Control requests travel by the way that is open: through libusb where it
/// holds the interface, else beside the kernel's driver, through the hidraw node of the very interface that
/// the request names, which puts the same packets on the wire. A kernel driver is never detached: it drives
/// the user's pointer.
class LinuxUSBService final : public USBService {
public:
    LinuxUSBService(std::shared_ptr<HidrawNodes> nodes, std::shared_ptr<Sleeper> sleeper);

    Matches matchingDevices(std::uint16_t vendorID, std::uint16_t productID) override;

private:
    std::shared_ptr<HidrawNodes> m_nodes;
    std::shared_ptr<Sleeper> m_sleeper;
};

} // namespace kelmoth
