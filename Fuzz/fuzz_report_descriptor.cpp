// Report descriptors come from whatever is plugged in.

#include "Fuzz/Check.h"
#include "Platform/Linux/ReportDescriptor.h"

#include <algorithm>
#include <fuzzer/FuzzedDataProvider.h>
#include <vector>

using namespace kelmoth;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto longest = maxFeatureReportSize({data, size});
    check(!longest || (*longest >= 1 && *longest <= 16384), "a size that the kernel can carry");
    std::vector<std::uint8_t> longer(data, data + size);
    longer.insert(longer.end(), {0x81, 0x00}); // one input report more
    check(!longest || size > 4094 || maxFeatureReportSize(longer) == longest, "input reports do not count");

    // A sound descriptor of a few feature reports, none too long, has the size of the longest.
    FuzzedDataProvider input(data, size);
    std::vector<std::uint8_t> sound{0xA1, 0x01};
    int expected = 0;
    for (std::uint8_t id = 1; id <= 6; ++id) {
        const auto bits = input.ConsumeIntegralInRange<std::uint8_t>(1, 32);
        const auto count = input.ConsumeIntegralInRange<std::uint8_t>(1, 255);
        sound.insert(sound.end(), {0x85, id, 0x75, bits, 0x95, count, 0xB1, 0x02});
        expected = std::max(expected, 1 + (bits * count + 7) / 8);
    }
    check(!maxFeatureReportSize(sound), "an open collection is no descriptor");
    sound.push_back(0xC0);
    check(maxFeatureReportSize(sound) == expected, "the longest feature report, with its ID byte");
    return 0;
}
