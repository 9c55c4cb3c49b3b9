#pragma once

#include "Platform/Simulated/SimulatedMouse.h"
#include "Platform/USB.h"

#include <memory>
#include <vector>

namespace kelmoth {

/// The USB devices among simulated mice: those on Bluetooth are none. Claiming an interface always succeeds.
std::shared_ptr<USBService> makeSimulatedUSBService(std::vector<std::shared_ptr<SimulatedMouse>> mice);

} // namespace kelmoth
