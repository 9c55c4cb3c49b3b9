#pragma once

#include "Platform/HID.h"
#include "Platform/Linux/Hidraw.h"

#include <memory>

namespace kelmoth {

/// HID interfaces as udev lists them, feature reports through their hidraw nodes.
class LinuxHIDService final : public HIDService {
public:
    explicit LinuxHIDService(std::shared_ptr<HidrawNodes> nodes);

    std::unique_ptr<HIDManager> createManager() override;

private:
    std::shared_ptr<HidrawNodes> m_nodes;
};

} // namespace kelmoth
