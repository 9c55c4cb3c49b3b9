#include "Platform/Linux/ReportDescriptor.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace kelmoth {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes operator+(Bytes first, const Bytes &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Bytes times(std::size_t count, const Bytes &bytes)
{
    Bytes all;
    for (; count > 0; --count) {
        all = all + bytes;
    }
    return all;
}

TEST(ReportDescriptor, GivesTheLongestFeatureReportOfAnHonestDescriptorOnly)
{
    const Bytes size8{0x75, 8};
    const Bytes ninety{0x95, 90};
    const Bytes feature{0xB1, 0x02};
    const Bytes id7{0x85, 7};
    const Bytes push{0xA4};
    const Bytes pop{0xB4};
    const Bytes plain = size8 + ninety + feature;
    struct Row {
        std::string what;
        Bytes descriptor;
        std::optional<std::int64_t> size;
    };
    const std::vector<Row> rows{
        {"empty", {}, std::nullopt},
        {"no feature report", size8 + ninety + Bytes{0x81, 0x02, 0x91, 0x02}, std::nullopt},
        {"a feature report of nothing", {0x75, 0, 0x95, 90, 0xB0}, std::nullopt},
        {"one", plain, 90},
        {"within collections", Bytes{0xA1, 0x01, 0xA1, 0x00} + plain + Bytes{0xC0, 0xC0}, 90},
        {"with an ID", id7 + plain, 91},
        {"IDs in other reports only", plain + id7 + Bytes{0x81, 0x02}, 91},
        {"fields add up, bits round up", Bytes{0x75, 1, 0x95, 9} + feature + feature + feature, 4},
        {"each ID by itself", id7 + plain + Bytes{0x85, 8, 0x95, 20} + feature, 91},
        {"values of four and two bytes", Bytes{0x77, 8, 0, 0, 0, 0x96, 0x2C, 0x01} + feature, 300},
        {"push and pop", size8 + ninety + push + Bytes{0x95, 1} + pop + feature, 90},
        {"a long item", Bytes{0xFE, 3, 0x10, 1, 2, 3} + plain, 90},
        {"the longest descriptor", plain + times((4096 - 6) / 2, {0x05, 1}), 90},
        {"a longer one", plain + times((4096 - 4) / 2, {0x05, 1}), std::nullopt},
        {"cut off in a value", plain + Bytes{0x96, 1}, std::nullopt},
        {"cut off in a long item", plain + Bytes{0xFE, 3, 0x10, 1, 2}, std::nullopt},
        {"cut off in a long item's head", plain + Bytes{0xFE, 0}, std::nullopt},
        {"pop without push", pop + plain, std::nullopt},
        {"pushed too often", times(5, push) + plain, std::nullopt},
        {"collection never ended", Bytes{0xA1, 0x01} + plain, std::nullopt},
        {"collection never begun", plain + Bytes{0xC0}, std::nullopt},
        {"ID 0", Bytes{0x85, 0} + plain, std::nullopt},
        {"an ID beyond a byte", Bytes{0x86, 0, 1} + plain, std::nullopt},
        {"a field beyond 256 bits", Bytes{0x76, 1, 1} + ninety + feature, std::nullopt},
        {"too many fields", size8 + Bytes{0x96, 1, 0x30} + feature, std::nullopt},
        {"the longest report", size8 + Bytes{0x96, 0x00, 0x30} + feature + Bytes{0x96, 0xFF, 0x0F} + feature,
         16383},
        {"a longer one", size8 + Bytes{0x96, 0x00, 0x30} + feature + Bytes{0x96, 0x00, 0x10} + feature,
         std::nullopt},
        {"sums beyond 32 bits", Bytes{0x76, 0, 1, 0x96, 0x00, 0x30} + times(1400, feature), std::nullopt},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(maxFeatureReportSize(row.descriptor), row.size) << row.what;
    }
}

} // namespace
} // namespace kelmoth
