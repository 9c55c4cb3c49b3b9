#pragma once

#include "Core/HID/TransactLoop.h"
#include "Platform/HID.h"
#include "Platform/Sleeper.h"

#include <cstdint>
#include <span>
#include <stop_token>

namespace kelmoth {

/// The second path to a mouse, for when the first gives no answer: the request as a HID feature report, the
/// answer read back the same way, as often as `transactLoop` does it; once `stop` is requested there is none.
/// The answer has 90 bytes, or 91 from a mouse that gives more. `waitTimeUs` in microseconds. Writes no log
/// lines. Blocks; transfer thread.
TransactResult transactViaHID(std::span<const std::uint8_t> report, HIDDevice &device, Sleeper &sleeper,
                              std::uint32_t waitTimeUs, const std::stop_token &stop = {});

} // namespace kelmoth
