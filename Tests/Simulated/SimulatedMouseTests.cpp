#include "Tests/Simulated/MouseOnTheBench.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

namespace kelmoth {

namespace {

using namespace std::chrono_literals;
using testing::Each;

class EveryModel : public testing::TestWithParam<std::string> {
protected:
    MouseOnTheBench bench{GetParam()};
    const DeviceCapabilities &capabilities = bench.device.capabilities();
};

INSTANTIATE_TEST_SUITE_P(SimulatedMouse, EveryModel, testing::ValuesIn(SimulatedModel::names()),
                         [](const auto &instance) {
                             auto name = instance.param;
                             std::ranges::replace(name, '-', '_');
                             return name;
                         });

TEST_P(EveryModel, keepsTheLightOfEachZone)
{
    const RGBColor fallback{1, 2, 3};
    const RGBColor violet{0x80, 0x00, 0xFF};
    for (const auto zone : allCases<RGBZone>()) {
        const bool hasZone = std::ranges::count(capabilities.rgbZones, zone) == 1;
        EXPECT_EQ(bench.accepts(command::getRGB{zone}), hasZone);
        EXPECT_EQ(bench.accepts(command::setBrightness{zone, 0.5}), hasZone);
        for (const auto effect : allCases<RGBEffect>()) {
            EXPECT_EQ(bench.accepts(command::setRGB{zone, {effect, violet, std::nullopt}}), hasZone);
            if (!hasZone) {
                continue;
            }
            const auto setting = RazerProtocol::parseRGB(bench.ask(command::getRGB{zone}),
                                                         bench.ask(command::getBrightness{zone}), fallback);
            ASSERT_TRUE(setting);
            // The wire has no code of its own for the last two effects.
            const bool isColored = effect == RGBEffect::staticColor || effect == RGBEffect::breathing ||
                                   effect == RGBEffect::reactive || effect == RGBEffect::starlight;
            EXPECT_EQ(setting->effect, effect >= RGBEffect::starlight ? RGBEffect::breathing : effect);
            EXPECT_EQ(setting->color, isColored ? violet : fallback);
            EXPECT_DOUBLE_EQ(setting->brightness, 127 / 255.0);
        }
    }
}

TEST(SimulatedMouse, drainsAndChargesWithTime)
{
    struct Row {
        std::string_view model;
        std::chrono::microseconds elapsed;
        int percent;
        bool isCharging;
    };
    for (const auto &row :
         {Row{"basilisk-v3-pro-wireless", 1s, 78, false}, Row{"basilisk-v3-pro-wireless", 51min, 68, false},
          Row{"basilisk-v3-x-hyperspeed", 1000h, 0, false}, Row{"basilisk-v3-pro-wired", 1s, 78, true},
          Row{"basilisk-v3-pro-wired", 11min, 89, true}, Row{"basilisk-v3-pro-wired", 1000h, 100, false}}) {
        MouseOnTheBench bench{row.model};
        bench.time.advance(row.elapsed);
        const auto level = RazerProtocol::parseBatteryLevel(bench.ask(command::getBatteryLevel{}));
        EXPECT_EQ(level, row.percent) << row.model << " " << row.elapsed.count();
        EXPECT_EQ(bench.mouse->state().isCharging, row.isCharging) << row.model << row.elapsed.count();
        if (bench.device.capabilities().reportsCharging) {
            const auto answer = bench.ask(command::getChargingStatus{});
            EXPECT_EQ(RazerProtocol::parseChargingStatus(answer), row.isCharging);
        }
    }
}

/// A request written out by hand: transaction id, data size, class, id and arguments.
Data frame(std::uint8_t transactionID, std::uint8_t size, std::uint8_t commandClass, std::uint8_t commandID,
           std::initializer_list<std::uint8_t> arguments)
{
    Data report(90);
    report[1] = transactionID;
    report[5] = size;
    report[6] = commandClass;
    report[7] = commandID;
    std::ranges::copy(arguments, report.begin() + 8);
    for (std::size_t i = 2; i < 88; ++i) {
        report[88] ^= report[i];
    }
    return report;
}

TEST(SimulatedMouse, checksRequestsAsFirmwareDoes)
{
    constexpr std::uint8_t unheard = 0x00;
    auto damaged = frame(0x1F, 0x02, 0x07, 0x80, {});
    damaged[88] ^= 0x01;
    auto withStatus = frame(0x1F, 0x02, 0x07, 0x80, {});
    withStatus[0] = 0x02;
    struct Row {
        std::string_view what;
        std::string_view model;
        Data request;
        std::uint8_t status;
    };
    const std::string_view v3 = "basilisk-v3";
    const std::string_view pro = "basilisk-v3-pro";
    for (const auto &row : {
             Row{"a good request", pro, frame(0x1F, 0x02, 0x07, 0x80, {}), 0x02},
             Row{"a wrong CRC", pro, damaged, 0x03},
             Row{"a status in a request", pro, withStatus, 0x03},
             Row{"an unknown id", pro, frame(0x1F, 0x02, 0x07, 0x81, {}), 0x05},
             Row{"an unknown class", pro, frame(0x1F, 0x02, 0x09, 0x80, {}), 0x05},
             Row{"a wrong data size", pro, frame(0x1F, 0x03, 0x07, 0x80, {}), 0x03},
             Row{"bytes past the data size", pro, frame(0x1F, 0x02, 0x07, 0x80, {0, 0, 1}), 0x03},
             Row{"a foreign transaction id", pro, frame(0xFF, 0x02, 0x07, 0x80, {}), unheard},
             Row{"the V3's id for its stages", v3, frame(0xFF, 0x26, 0x04, 0x86, {1}), 0x02},
             Row{"the usual id for the V3's stages", v3, frame(0x1F, 0x26, 0x04, 0x86, {1}), unheard},
             Row{"the V3's id for another command", v3, frame(0xFF, 0x04, 0x0B, 0x8B, {0, 4}), unheard},
             Row{"the V3's id on another model", pro, frame(0xFF, 0x26, 0x04, 0x86, {1}), unheard},
             Row{"a stage count of six", pro, frame(0x1F, 0x26, 0x04, 0x06, {1, 1, 6}), 0x03},
             Row{"an active stage of two out of one", pro,
                 frame(0x1F, 0x26, 0x04, 0x06, {1, 2, 1, 1, 3, 32, 3, 32}), 0x03},
             Row{"stages out of order", pro, frame(0x1F, 0x26, 0x04, 0x06, {1, 1, 1, 2, 3, 32, 3, 32}), 0x03},
             Row{"an effect code of six", pro, frame(0x1F, 0x06, 0x0F, 0x02, {1, 4, 6}), 0x03},
             Row{"a colour where none belongs", pro, frame(0x1F, 0x06, 0x0F, 0x02, {1, 4, 1, 0, 0, 1}), 0x03},
             Row{"a profile of six", pro, frame(0x1F, 0x0A, 0x02, 0x8C, {6, 1}), 0x03},
             Row{"a layer of two", pro, frame(0x1F, 0x0A, 0x02, 0x8C, {0, 1, 2}), 0x03},
             Row{"a function of six arguments", pro, frame(0x1F, 0x0A, 0x02, 0x0C, {0, 1, 0, 1, 6}), 0x03},
         }) {
        MouseOnTheBench bench{row.model};
        bench.ask(command::getLiftOff{}); // whose answer must not pass for one to a request unheard
        const auto answer = bench.ask(row.request);
        ASSERT_EQ(answer.size(), 90u) << row.what;
        EXPECT_EQ(int{answer[0]}, row.status) << row.what;
        if (row.status == unheard) {
            EXPECT_THAT(answer, Each(0)) << row.what;
        } else {
            EXPECT_EQ(answer[88], RazerProtocol::crc(answer)) << row.what;
        }
    }
}

TEST(SimulatedMouse, stallsOnTheWrongInterfaceAndLength)
{
    struct Row {
        std::string_view model;
        std::uint16_t wIndex;
        std::size_t length;
        int status;
    };
    for (const auto &row :
         {Row{"basilisk-v3", 3, 90, 0}, Row{"basilisk-v3", 0, 90, EPIPE}, Row{"basilisk-v3-pro", 0, 90, 0},
          Row{"basilisk-v3-pro", 3, 90, EPIPE}, Row{"basilisk-v3-pro", 0, 89, EPIPE},
          Row{"basilisk-v3-pro", 0, 91, EPIPE}, Row{"basilisk-v3:bluetooth", 3, 90, EPIPE}}) {
        MouseOnTheBench bench{row.model};
        auto request = frame(0x1F, 0x04, 0x0B, 0x8B, {0, 4});
        request.resize(row.length);
        EXPECT_EQ(bench.mouse->setReport(row.wIndex, request), row.status) << row.model << row.wIndex;
        Data buffer(90);
        const auto read = bench.mouse->getReport(row.wIndex, buffer);
        EXPECT_EQ(read.status, row.length == 90 ? row.status : 0) << row.model << row.wIndex;
        EXPECT_EQ(read.length, read.status == 0 ? 90u : 0u);
    }
}

TEST(SimulatedMouse, isBusyUntilTheAnswerIsReady)
{
    for (const auto &[name, ready] : {std::pair{"basilisk-v3", 8ms}, std::pair{"basilisk-v3-pro", 45ms}}) {
        MouseOnTheBench bench{name};
        EXPECT_THAT(bench.read(), Each(0)) << "before any request";
        const auto request = RazerProtocol::createReport(command::getLiftOff{}, bench.device);
        bench.send(request);
        bench.time.advance(ready - 1us);
        auto early = bench.read();
        EXPECT_EQ(early[0], 0x01);
        early[0] = 0;
        EXPECT_EQ(early, request);
        bench.time.advance(1us);
        EXPECT_EQ(bench.read()[0], 0x02);
        EXPECT_EQ(bench.read()[0], 0x02) << "an answer stays until the next request";
    }
}

} // namespace

} // namespace kelmoth
