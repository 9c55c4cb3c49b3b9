#pragma once

#include <cstdint>
#include <vector>

namespace kelmoth {

/// Every integer of a setting: signed, 64 bits on each platform.
using Int = std::int64_t;

/// Bytes as they travel to and from the mouse.
using Data = std::vector<std::uint8_t>;

} // namespace kelmoth
