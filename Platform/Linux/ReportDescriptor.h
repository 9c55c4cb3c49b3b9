#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace kelmoth {

/// The longest feature report that a HID report descriptor declares, in bytes, with its ID byte where the
/// descriptor uses report IDs. None when it declares no feature report, or is invalid: longer than 4096
/// bytes, cut off in the middle of an item, unbalanced collections, a pop without its push, an impossible
/// report ID, or a report beyond the kernel's limit. Descriptors come from hardware: any bytes are safe.
/// Pure, any thread.
std::optional<std::int64_t> maxFeatureReportSize(std::span<const std::uint8_t> descriptor);

} // namespace kelmoth
