// Report descriptors come from whatever is plugged in.

#include "Fuzz/Check.h"
#include "Platform/Linux/ReportDescriptor.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <vector>

using namespace kelmoth;
using fuzz::check;

namespace {

constexpr std::int64_t longestReport = 16384;

void checkAny(std::span<const std::uint8_t> descriptor)
{
    const auto size = maxFeatureReportSize(descriptor);
    check(!size || (*size >= 1 && *size <= longestReport), "a size that the kernel can carry");
    if (size && descriptor.size() + 2 <= 4096) {
        // Eight bits of an input report more: nothing that a feature report knows of.
        std::vector<std::uint8_t> longer(descriptor.begin(), descriptor.end());
        longer.insert(longer.end(), {0x81, 0x00});
        check(maxFeatureReportSize(longer) == size, "input reports do not count");
        longer.push_back(0xC0);
        check(!maxFeatureReportSize(longer), "a collection that was never opened cannot end");
    }
}

/// A sound descriptor of a few feature fields, with the size that it must have.
void checkSound(FuzzedDataProvider &input)
{
    std::vector<std::uint8_t> descriptor{0x06, 0x00, 0xFF, 0x09, 0x01, 0xA1, 0x01};
    std::array<std::int64_t, 256> bits{};
    const bool usesIDs = input.ConsumeBool();
    for (auto fields = input.ConsumeIntegralInRange(1, 6); fields > 0; --fields) {
        const auto id = usesIDs ? input.ConsumeIntegralInRange<std::uint8_t>(1, 255) : std::uint8_t{0};
        const auto size = input.ConsumeIntegralInRange<std::uint8_t>(1, 32);
        const auto count = input.ConsumeIntegralInRange<std::uint16_t>(1, 1000);
        if (usesIDs) {
            descriptor.insert(descriptor.end(), {0x85, id});
        }
        descriptor.insert(descriptor.end(), {0x75, size, 0x96, static_cast<std::uint8_t>(count & 0xFF),
                                             static_cast<std::uint8_t>(count >> 8), 0xB1, 0x02});
        bits[id] += std::int64_t{size} * count;
    }
    descriptor.push_back(0xC0);
    const auto longest = *std::ranges::max_element(bits);
    if ((longest + 7) / 8 < longestReport) {
        check(maxFeatureReportSize(descriptor) == (longest + 7) / 8 + (usesIDs ? 1 : 0),
              "the longest feature report, with its ID byte");
    }
    descriptor.pop_back();
    check(!maxFeatureReportSize(descriptor), "an open collection is no descriptor");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    checkAny({data, size});
    FuzzedDataProvider input(data, size);
    checkSound(input);
    return 0;
}
