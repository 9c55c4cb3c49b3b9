#pragma once

#include "Platform/HID.h"
#include "Platform/Simulated/SimulatedMouse.h"

#include <memory>
#include <vector>

namespace kelmoth {

/// The HID interfaces of simulated mice. Callbacks come through the application's event loop, whichever
/// thread pulls a mouse out or puts it back; the service takes over the attachment callbacks of the mice.
/// Main thread.
std::shared_ptr<HIDService> makeSimulatedHIDService(std::vector<std::shared_ptr<SimulatedMouse>> mice);

} // namespace kelmoth
