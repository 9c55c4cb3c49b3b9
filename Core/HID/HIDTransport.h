#pragma once

#include "Core/HID/TransactLoop.h"
#include "Platform/HID.h"
#include "Platform/Sleeper.h"

#include <cstdint>
#include <span>
#include <stop_token>

namespace kelmoth {

/// The fallback transport: sends the request as a HID feature report and reads the answer as one, with the
/// retries of `transactLoop`; none once `stop` is requested. The answer has 90 or 91 bytes. `waitTimeUs` in
/// microseconds. Writes no log lines. Blocks; transfer thread.
TransactResult transactViaHID(std::span<const std::uint8_t> report, HIDDevice &device, Sleeper &sleeper,
                              std::uint32_t waitTimeUs, const std::stop_token &stop = {});

} // namespace kelmoth
