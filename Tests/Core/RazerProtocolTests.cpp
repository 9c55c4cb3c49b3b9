#include "Core/HID/RazerProtocol.h"

#include <QByteArray>
#include <gmock/gmock.h>

#include <limits>

namespace kelmoth {
namespace {

using namespace RazerProtocol;

const RazerDevice v3{{}, razerVendorID, 0x0099, {}, "USB", {}, {}};
const RazerDevice pro{{}, razerVendorID, 0x00AB, {}, "USB", {}, {}};

/// The report that begins with a zero and these bytes, in hexadecimal.
Data report(const char *bytes, std::uint8_t crc = 0)
{
    const auto given = QByteArray::fromHex(bytes);
    Data whole(90);
    std::ranges::copy(given, whole.begin() + 1);
    whole[88] = crc;
    return whole;
}

TEST(RazerProtocol, BuildsEachRequestByteForByte)
{
    using namespace command;
    using enum MouseButton;
    using enum RGBEffect;
    using enum RGBZone;
    using Limits = std::numeric_limits<double>;
    const std::vector<DPIStage> two{{7, 800, {}}, {9, 1600, {}}};
    const std::vector<DPIStage> seven(7, DPIStage{0, 0x12345, {}});
    struct Example {
        RazerCommand command;
        const char *bytes; ///< from the transaction id on
        std::uint8_t crc;
        const RazerDevice &device = pro;
    };
    const std::vector<Example> examples{
        {getBatteryLevel{}, "1F 000000 02 07 80", 0x85},
        {getChargingStatus{}, "1F 000000 02 07 84", 0x81},
        {getDPIStages{}, "1F 000000 26 04 86 01", 0xA5},
        {getDPIStages{}, "FF 000000 26 04 86 01", 0xA5, v3},
        {setDPIStages{two, 1}, "FF 000000 26 04 06 01 02 02 01 0320 0320 0000 02 0640 0640", 0x26, v3},
        {setDPIStages{two, -3}, "1F 000000 26 04 06 01 01 02 01 0320 0320 0000 02 0640 0640", 0x25},
        {setDPIStages{seven, 6},
         "1F 000000 26 04 06 01 05 05 01 2345 2345 0000 02 2345 2345 0000 03 2345 2345 0000"
         "04 2345 2345 0000 05 2345 2345",
         0x24},
        {setRGB{logo, {staticColor, {255, 0, 0}, {}, 1.0, 0.5}},
         "1F 000000 09 0F 02 01 04 01 00 00 01 FF0000", 0xFE},
        {setRGB{dpiLight, {ripple, {255, 0, 0}, {}, 1.0, 0.5}}, "1F 000000 06 0F 02 01 02 02", 0x0A},
        {getRGB{underglow}, "1F 000000 0C 0F 82 01 0A", 0x8A},
        {setBrightness{scrollWheel, 0.5}, "1F 000000 03 0F 04 01 01 7F", 0x77},
        {setBrightness{scrollWheel, 1.2}, "1F 000000 03 0F 04 01 01 FF", 0xF7},
        {setBrightness{scrollWheel, -Limits::infinity()}, "1F 000000 03 0F 04 01 01 00", 0x08},
        {setBrightness{scrollWheel, Limits::quiet_NaN()}, "1F 000000 03 0F 04 01 01 FF", 0xF7},
        {getBrightness{logo}, "1F 000000 03 0F 84 01 04", 0x8D},
        {prepareLiftOff{}, "1F 000000 03 0B 03 00 04", 0x0F},
        {setLiftOff{1}, "1F 000000 04 0B 0B 00 04 01 01", 0x00},
        {setLiftOff{7}, "1F 000000 04 0B 0B 00 04 01 02", 0x03},
        {setLiftOff{-7}, "1F 000000 04 0B 0B 00 04 01 00", 0x01},
        {getLiftOff{}, "1F 000000 04 0B 8B 00 04", 0x80},
        {setButtonMapping{dpiDown, ButtonAction::keyPress("cmd+esc"), 9, true},
         "1F 000000 0A 02 0C 05 6A 01 02020829", 0x4B},
        {setButtonMapping{back, ButtonAction::back(), -1}, "1F 000000 0A 02 0C 00 04 00 010104", 0x04},
        {getButtonMapping{clutch}, "1F 000000 0A 02 8C 00 0F", 0x8B},
    };
    for (const auto &[command, bytes, crc, device] : examples) {
        EXPECT_EQ(createReport(command, device), report(bytes, crc)) << bytes;
    }
}

TEST(RazerProtocol, SendsBackTheBrightnessThatTheMouseReports)
{
    for (int byte = 0; byte <= 255; ++byte) {
        EXPECT_EQ(createSetBrightnessReport(RGBZone::logo, byte / 255.0, v3)[10], byte);
    }
}

TEST(RazerProtocol, ClassifiesAnswers)
{
    using enum ResponseStatus;
    const auto write = report("1F 000000 04 0B 0B 00 04 01 01");
    const auto read = report("1F 000000 04 0B 8B 00 04");
    const auto classified = [](Data answer, std::uint8_t status, const Data &request, std::size_t size = 90) {
        answer[0] = status;
        answer[1] = 0x77; // neither the transaction id nor the CRC is looked at
        answer.resize(size);
        return classify(answer, request);
    };
    const std::vector toWrite{noMatch, success, success, rejected, rejected, rejected, noMatch};
    const std::vector toRead{noMatch, noMatch, success, rejected, rejected, rejected, noMatch};
    for (std::size_t i = 0; i < toRead.size(); ++i) {
        const auto status = static_cast<std::uint8_t>(i);
        EXPECT_EQ(classified(write, status, write), toWrite[i]) << i;
        EXPECT_EQ(classified(read, status, read), toRead[i]) << i;
    }
    EXPECT_EQ(classified(read, 0x02, read, 89), noMatch);
    EXPECT_EQ(classified(read, 0x02, read, 91), success);
    EXPECT_EQ(classified(read, 0x02, Data(read.begin(), read.begin() + 7)), noMatch);
    EXPECT_EQ(classified(write, 0x02, read), noMatch);                              // another id
    EXPECT_EQ(classified(report("1F 000000 04 0F 8B 00 04"), 0x03, read), noMatch); // another class
}

TEST(RazerProtocol, ReadsDPIStages)
{
    const auto stages = report("1F 000000 26 04 86 01 02 03  01 0320 0320 0000  02 7530 7530 0000  03 0001");
    EXPECT_EQ(parseDPIStages(stages), (DPIStages{1, {800, 30000, 1}}));
    using Change = std::pair<std::size_t, std::uint8_t>; // of the count, the active stage, the last DPI
    for (const auto &[at, byte] : {Change{10, 0}, Change{10, 6}, Change{9, 0}, Change{9, 4}, Change{27, 0}}) {
        auto changed = stages;
        changed[at] = byte;
        EXPECT_EQ(parseDPIStages(changed), std::nullopt) << at << " " << int{byte};
    }
    EXPECT_EQ(parseDPIStages(std::span(stages).first(89)), std::nullopt);
}

TEST(RazerProtocol, ReadsOtherAnswers)
{
    const auto half = report("1F 000000 03 0F 84 01 04 7F");
    EXPECT_EQ(parseRGB(report("1F 000000 0C 0F 82 01 04 05 00 02 01 010203"), half, {9, 8, 7}),
              (RGBSetting{RGBEffect::reactive, {1, 2, 3}, std::nullopt, 127 / 255.0, 0.5}));
    EXPECT_EQ(parseRGB(report("1F 000000 0C 0F 82 01 04 03 00 00 00 010203"), half, {9, 8, 7}),
              (RGBSetting{RGBEffect::spectrum, {9, 8, 7}, std::nullopt, 127 / 255.0, 0.5}));
    EXPECT_EQ(parseRGB(report("1F 000000 0C 0F 82 01 04 06"), half, {}), std::nullopt);
    EXPECT_EQ(parseRGB(half, std::span(half).first(40), {}), std::nullopt);
    EXPECT_EQ(parseLiftOff(report("1F 000000 04 0B 8B 00 04 01 02")), 2);
    EXPECT_EQ(parseLiftOff(report("1F 000000 04 0B 8B 00 04 01 03")), std::nullopt);
    EXPECT_EQ(parseLiftOff(report("1F 000000 04 0B 8B 00 04 00 01")), std::nullopt);
    EXPECT_EQ(parseBatteryLevel(report("1F 000000 02 07 80 00 FE")), 99);
    EXPECT_EQ(parseBatteryLevel(report("1F 000000 02 07 80 00 FF")), 100);
    EXPECT_TRUE(parseChargingStatus(report("1F 000000 02 07 84 00 01")));
    EXPECT_FALSE(parseChargingStatus(report("1F 000000 02 07 84 00 02")));
    EXPECT_EQ(parseButtonMapping(report("1F 000000 0A 02 8C 00 60 00 06020304")), ButtonAction::dpiChange(5));
    EXPECT_EQ(parseButtonMapping(Data(17)), std::nullopt);
}

} // namespace
} // namespace kelmoth
