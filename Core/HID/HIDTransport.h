#pragma once

#include "Core/Device/Types.h"
#include "Platform/HID.h"
#include "Platform/Sleeper.h"

#include <cstdint>
#include <optional>
#include <span>

namespace kelmoth {

/// The second path to a mouse, for when the first gives no answer: the request as a HID feature report, the
/// answer read back the same way. At most five attempts; none when the mouse rejected the command or never
/// answered it. The answer has 90 bytes, or 91 from a mouse that gives more. `waitTimeUs` in microseconds.
/// Writes no log lines. Blocks; transfer thread.
std::optional<Data> transactViaHID(std::span<const std::uint8_t> report, HIDDevice &device, Sleeper &sleeper,
                                   std::uint32_t waitTimeUs);

} // namespace kelmoth
