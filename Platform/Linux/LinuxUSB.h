#pragma once

#include "Platform/Linux/Hidraw.h"
#include "Platform/Sleeper.h"
#include "Platform/USB.h"

#include <memory>

namespace kelmoth {

/// USB devices as udev lists them.
class LinuxUSBService final : public USBService {
public:
    LinuxUSBService(std::shared_ptr<HidrawNodes> nodes, std::shared_ptr<Sleeper> sleeper);

    Matches matchingDevices(std::uint16_t vendorID, std::uint16_t productID) override;

private:
    std::shared_ptr<HidrawNodes> m_nodes;
    std::shared_ptr<Sleeper> m_sleeper;
};

} // namespace kelmoth
