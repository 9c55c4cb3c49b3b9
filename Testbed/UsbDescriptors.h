#pragma once

#include "Platform/Simulated/SimulatedMouse.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kelmoth {

/// What a USB device says of itself when it is asked by GET_DESCRIPTOR: a full-speed mouse with four HID
/// interfaces, as mice for games have them. Interface 0 is the pointer, 1 a keyboard, 2 media keys, 3 the
/// vendor's own. The one that takes commands (the mouse's `protocolInterface`) has a feature report of 90
/// bytes without an ID besides. None for what such a device does not have.
std::optional<std::vector<std::uint8_t>> usbDescriptor(const SimulatedMouse &mouse, std::uint8_t type,
                                                       std::uint8_t index, std::uint16_t wIndex);

/// The pointer's input report: moved to the right by one.
inline const std::vector<std::uint8_t> pointerMoved{0, 1, 0, 0, 0, 0};

} // namespace kelmoth
