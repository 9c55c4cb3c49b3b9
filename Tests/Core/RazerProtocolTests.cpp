#include "Core/HID/RazerProtocol.h"

#include <gmock/gmock.h>

#include <limits>
#include <vector>

namespace kelmoth {
namespace {

namespace protocol = RazerProtocol;

RazerDevice mouse(std::uint16_t productID)
{
    RazerDevice device;
    device.vendorID = razerVendorID;
    device.productID = productID;
    device.transport = "USB";
    return device;
}

const RazerDevice basiliskV3 = mouse(0x0099);
const RazerDevice basiliskV3Pro = mouse(0x00AB);

RGBSetting light(RGBEffect effect, RGBColor color = {0xAA, 0xBB, 0xCC})
{
    return {effect, color, RGBColor{1, 2, 3}, 1.0, 0.5};
}

/// A whole request is its first bytes, zeros, and the CRC.
struct Example {
    RazerCommand command;
    const RazerDevice *device;
    Data beginning;
};

Data whole(Data beginning)
{
    beginning.resize(90);
    std::uint8_t sum = 0;
    for (std::size_t i = 2; i < 88; ++i) {
        sum = static_cast<std::uint8_t>(sum ^ beginning[i]);
    }
    beginning[88] = sum;
    return beginning;
}

TEST(RazerProtocol, BuildsEachRequestByteForByte)
{
    const std::vector<DPIStage> two{{7, 800, {}}, {9, 1600, {}}};
    const std::vector<DPIStage> seven(7, DPIStage{0, 0x12345, {}});
    const Data fiveStages{0x00, 0x1F, 0,    0,    0,    0x26, 0x04, 0x06, 0x01, 0x05, 0x05,
                          1,    0x23, 0x45, 0x23, 0x45, 0,    0,    2,    0x23, 0x45, 0x23,
                          0x45, 0,    0,    3,    0x23, 0x45, 0x23, 0x45, 0,    0,    4,
                          0x23, 0x45, 0x23, 0x45, 0,    0,    5,    0x23, 0x45, 0x23, 0x45};
    const std::vector<Example> examples{
        {command::getBatteryLevel{}, &basiliskV3, {0, 0x1F, 0, 0, 0, 0x02, 0x07, 0x80}},
        {command::getChargingStatus{}, &basiliskV3Pro, {0, 0x1F, 0, 0, 0, 0x02, 0x07, 0x84}},
        {command::getDPIStages{}, &basiliskV3, {0, 0xFF, 0, 0, 0, 0x26, 0x04, 0x86, 0x01}},
        {command::getDPIStages{}, &basiliskV3Pro, {0, 0x1F, 0, 0, 0, 0x26, 0x04, 0x86, 0x01}},
        {command::setDPIStages{two, 1}, &basiliskV3, {0,    0xFF, 0,    0,    0,    0x26, 0x04, 0x06,
                                                      0x01, 0x02, 0x02, 0x01, 0x03, 0x20, 0x03, 0x20,
                                                      0,    0,    0x02, 0x06, 0x40, 0x06, 0x40}},
        {command::setDPIStages{seven, 6}, &basiliskV3Pro, fiveStages},
        {command::setDPIStages{two, -3}, &basiliskV3Pro, {0,    0x1F, 0,    0,    0,    0x26, 0x04, 0x06,
                                                          0x01, 0x01, 0x02, 0x01, 0x03, 0x20, 0x03, 0x20,
                                                          0,    0,    0x02, 0x06, 0x40, 0x06, 0x40}},
        {command::setDPIStages{{}, 4}, &basiliskV3Pro, {0, 0x1F, 0, 0, 0, 0x26, 0x04, 0x06, 0x01, 0x01}},
        {command::setRGB{RGBZone::logo, light(RGBEffect::staticColor, {255, 0, 0})},
         &basiliskV3,
         {0, 0x1F, 0, 0, 0, 0x09, 0x0F, 0x02, 0x01, 0x04, 0x01, 0, 0, 0x01, 0xFF}},
        {command::setRGB{RGBZone::scrollWheel, light(RGBEffect::off)},
         &basiliskV3Pro,
         {0, 0x1F, 0, 0, 0, 0x06, 0x0F, 0x02, 0x01, 0x01}},
        {command::setRGB{RGBZone::underglow, light(RGBEffect::wave)},
         &basiliskV3Pro,
         {0, 0x1F, 0, 0, 0, 0x06, 0x0F, 0x02, 0x01, 0x0A, 0x04, 0x01, 0x28}},
        {command::setRGB{RGBZone::scrollWheel, light(RGBEffect::breathing)},
         &basiliskV3Pro,
         {0, 0x1F, 0, 0, 0, 0x09, 0x0F, 0x02, 0x01, 0x01, 0x02, 0x01, 0, 0x01, 0xAA, 0xBB, 0xCC}},
        {command::setRGB{RGBZone::scrollWheel, light(RGBEffect::spectrum)},
         &basiliskV3Pro,
         {0, 0x1F, 0, 0, 0, 0x06, 0x0F, 0x02, 0x01, 0x01, 0x03}},
        {command::setRGB{RGBZone::scrollWheel, light(RGBEffect::reactive)},
         &basiliskV3Pro,
         {0, 0x1F, 0, 0, 0, 0x09, 0x0F, 0x02, 0x01, 0x01, 0x05, 0, 0x02, 0x01, 0xAA, 0xBB, 0xCC}},
        {command::setRGB{RGBZone::dpiLight, light(RGBEffect::starlight)},
         &basiliskV3Pro,
         {0, 0x1F, 0, 0, 0, 0x09, 0x0F, 0x02, 0x01, 0x02, 0x02, 0x01, 0, 0x01, 0xAA, 0xBB, 0xCC}},
        {command::setRGB{RGBZone::dpiLight, light(RGBEffect::ripple)},
         &basiliskV3Pro,
         {0, 0x1F, 0, 0, 0, 0x06, 0x0F, 0x02, 0x01, 0x02, 0x02}},
        {command::getRGB{RGBZone::underglow}, &basiliskV3, {0, 0x1F, 0, 0, 0, 0x0C, 0x0F, 0x82, 0x01, 0x0A}},
        {command::setBrightness{RGBZone::scrollWheel, 0.5},
         &basiliskV3,
         {0, 0x1F, 0, 0, 0, 0x03, 0x0F, 0x04, 0x01, 0x01, 0x7F}},
        {command::getBrightness{RGBZone::logo},
         &basiliskV3,
         {0, 0x1F, 0, 0, 0, 0x03, 0x0F, 0x84, 0x01, 0x04}},
        {command::prepareLiftOff{}, &basiliskV3, {0, 0x1F, 0, 0, 0, 0x03, 0x0B, 0x03, 0x00, 0x04}},
        {command::setLiftOff{1}, &basiliskV3, {0, 0x1F, 0, 0, 0, 0x04, 0x0B, 0x0B, 0x00, 0x04, 0x01, 0x01}},
        {command::setLiftOff{7}, &basiliskV3, {0, 0x1F, 0, 0, 0, 0x04, 0x0B, 0x0B, 0x00, 0x04, 0x01, 0x02}},
        {command::setLiftOff{-7}, &basiliskV3, {0, 0x1F, 0, 0, 0, 0x04, 0x0B, 0x0B, 0x00, 0x04, 0x01}},
        {command::getLiftOff{}, &basiliskV3, {0, 0x1F, 0, 0, 0, 0x04, 0x0B, 0x8B, 0x00, 0x04}},
        {command::setButtonMapping{MouseButton::dpiDown, ButtonAction::keyPress("cmd+esc"), 9, true},
         &basiliskV3,
         {0, 0x1F, 0, 0, 0, 0x0A, 0x02, 0x0C, 0x05, 0x6A, 0x01, 0x02, 0x02, 0x08, 0x29}},
        {command::setButtonMapping{MouseButton::back, ButtonAction::back(), -1, false},
         &basiliskV3,
         {0, 0x1F, 0, 0, 0, 0x0A, 0x02, 0x0C, 0x00, 0x04, 0x00, 0x01, 0x01, 0x04}},
        {command::getButtonMapping{MouseButton::clutch, 0, false},
         &basiliskV3,
         {0, 0x1F, 0, 0, 0, 0x0A, 0x02, 0x8C, 0x00, 0x0F}},
    };
    for (const auto &example : examples) {
        EXPECT_EQ(protocol::createReport(example.command, *example.device), whole(example.beginning))
            << protocol::hexPrefix(example.beginning);
    }
}

TEST(RazerProtocol, SealsRequestsWithTheKnownCRCs)
{
    const auto crcOf = [](const RazerCommand &command) {
        return protocol::createReport(command, basiliskV3)[88];
    };
    EXPECT_EQ(crcOf(command::getBatteryLevel{}), 0x85);
    EXPECT_EQ(crcOf(command::getChargingStatus{}), 0x81);
    EXPECT_EQ(crcOf(command::getDPIStages{}), 0xA5);
    EXPECT_EQ(crcOf(command::setLiftOff{1}), 0x00);
    EXPECT_EQ(crcOf(command::setRGB{RGBZone::logo, light(RGBEffect::staticColor, {255, 0, 0})}), 0xFE);
    EXPECT_EQ(crcOf(command::setBrightness{RGBZone::scrollWheel, 0.5}), 0x77);
    auto report = protocol::createReport(command::getBatteryLevel{}, basiliskV3);
    report[0] = report[1] = 0x55;
    EXPECT_EQ(protocol::crc(report), 0x85);
}

TEST(RazerProtocol, ClampsBrightness)
{
    const auto byteOf = [](double brightness) {
        return protocol::createSetBrightnessReport(RGBZone::logo, brightness, basiliskV3)[10];
    };
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(byteOf(1.2), 255);
    EXPECT_EQ(byteOf(-0.3), 0);
    EXPECT_EQ(byteOf(infinity), 255);
    EXPECT_EQ(byteOf(-infinity), 0);
    EXPECT_EQ(byteOf(std::numeric_limits<double>::quiet_NaN()), 255);
    for (int byte = 0; byte <= 255; ++byte) {
        EXPECT_EQ(byteOf(byte / 255.0), byte); // what the mouse reports goes back unchanged
    }
}

TEST(RazerProtocol, ClassifiesAnswers)
{
    using enum ResponseStatus;
    const auto write = protocol::createReport(command::setLiftOff{1}, basiliskV3);
    const auto read = protocol::createReport(command::getLiftOff{}, basiliskV3);
    const auto answered = [](Data report, std::uint8_t status, std::size_t size = 90) {
        report[0] = status;
        report[1] = 0x77; // neither the transaction id nor the CRC is looked at
        report.resize(size);
        return report;
    };
    struct Row {
        std::uint8_t status;
        ResponseStatus toWrite;
        ResponseStatus toRead;
    };
    for (const Row row :
         {Row{0x00, noMatch, noMatch}, Row{0x01, success, noMatch}, Row{0x02, success, success},
          Row{0x03, rejected, rejected}, Row{0x04, rejected, rejected}, Row{0x05, rejected, rejected},
          Row{0x06, noMatch, noMatch}, Row{0xFF, noMatch, noMatch}}) {
        EXPECT_EQ(protocol::classify(answered(write, row.status), write), row.toWrite) << int{row.status};
        EXPECT_EQ(protocol::classify(answered(read, row.status), read), row.toRead) << int{row.status};
    }
    EXPECT_EQ(protocol::classify(answered(read, 0x02, 89), read), noMatch);
    EXPECT_EQ(protocol::classify(answered(read, 0x02, 91), read), success);
    EXPECT_EQ(protocol::classify(answered(write, 0x02), read), noMatch); // another id
    auto otherClass = answered(read, 0x03);
    otherClass[6] = 0x0F;
    EXPECT_EQ(protocol::classify(otherClass, read), noMatch);
    EXPECT_EQ(protocol::classify(answered(read, 0x02), std::span(read).first(7)), noMatch);
    EXPECT_EQ(protocol::classify({}, {}), noMatch);
}

/// An answer with these bytes at the given places.
Data answer(std::vector<std::pair<std::size_t, std::uint8_t>> bytes, std::size_t size = 90)
{
    Data report(90);
    for (const auto &[at, byte] : bytes) {
        report[at] = byte;
    }
    report.resize(size);
    return report;
}

TEST(RazerProtocol, ReadsDPIStages)
{
    const auto stages = answer({{9, 2}, {10, 3}, {12, 0x03}, {13, 0x20}, {19, 0x75}, {20, 0x30}, {27, 1}});
    EXPECT_EQ(protocol::parseDPIStages(stages), (protocol::DPIStages{1, {800, 30000, 1}}));
    const auto changed = [&stages](std::size_t at, std::uint8_t byte) {
        auto report = stages;
        report[at] = byte;
        return protocol::parseDPIStages(report);
    };
    EXPECT_EQ(changed(10, 0), std::nullopt);
    EXPECT_EQ(changed(10, 6), std::nullopt);
    EXPECT_EQ(changed(9, 0), std::nullopt);
    EXPECT_EQ(changed(9, 4), std::nullopt);
    EXPECT_EQ(changed(27, 0), std::nullopt); // a stage of DPI 0
    EXPECT_EQ(protocol::parseDPIStages(std::span(stages).first(89)), std::nullopt);
}

TEST(RazerProtocol, ReadsLighting)
{
    const RGBColor fallback{9, 8, 7};
    const auto brightness = answer({{10, 0x7F}});
    const auto parsed = [&](std::uint8_t code, std::uint8_t colors) {
        return protocol::parseRGB(answer({{10, code}, {13, colors}, {14, 1}, {15, 2}, {16, 3}}), brightness,
                                  fallback);
    };
    EXPECT_EQ(parsed(5, 1), (RGBSetting{RGBEffect::reactive, {1, 2, 3}, std::nullopt, 127 / 255.0, 0.5}));
    EXPECT_EQ(parsed(3, 0), (RGBSetting{RGBEffect::spectrum, fallback, std::nullopt, 127 / 255.0, 0.5}));
    EXPECT_EQ(parsed(6, 1), std::nullopt);
    EXPECT_EQ(protocol::parseRGB(brightness, answer({}, 40), fallback), std::nullopt);
}

TEST(RazerProtocol, ReadsLiftOffBatteryAndButtons)
{
    EXPECT_EQ(protocol::parseLiftOff(answer({{10, 1}})), 0);
    EXPECT_EQ(protocol::parseLiftOff(answer({{10, 1}, {11, 2}})), 2);
    EXPECT_EQ(protocol::parseLiftOff(answer({{10, 1}, {11, 3}})), std::nullopt);
    EXPECT_EQ(protocol::parseLiftOff(answer({{11, 1}})), std::nullopt);
    EXPECT_EQ(protocol::parseBatteryLevel(answer({{9, 0}})), 0);
    EXPECT_EQ(protocol::parseBatteryLevel(answer({{9, 2}})), 0);
    EXPECT_EQ(protocol::parseBatteryLevel(answer({{9, 200}})), 78);
    EXPECT_EQ(protocol::parseBatteryLevel(answer({{9, 254}})), 99);
    EXPECT_EQ(protocol::parseBatteryLevel(answer({{9, 255}})), 100);
    EXPECT_TRUE(protocol::parseChargingStatus(answer({{9, 1}})));
    EXPECT_FALSE(protocol::parseChargingStatus(answer({{9, 2}})));
    EXPECT_EQ(protocol::parseButtonMapping(answer({{11, 6}, {12, 2}, {13, 3}, {14, 4}})),
              ButtonAction::dpiChange(5));
    EXPECT_EQ(protocol::parseButtonMapping(answer({}, 17)), std::nullopt);
}

} // namespace
} // namespace kelmoth
