#include "Core/Device/DeviceState.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace kelmoth {
namespace {

using nlohmann::json;
using testing::HasSubstr;

/// A record with something everywhere, and its agreed text.
const DeviceState sample{
    .dpiStages = {{0, 800, DPIStageColor::red}, {7, -1, DPIStageColor::cyan}},
    .currentDPIStage = -7,
    .pollingRate = 1000,
    .rgbSettings = {{RGBZone::logo, {RGBEffect::staticColor, {0, 255, 0}, RGBColor{4, 5, 6}, 1.0, 0.5}},
                    {RGBZone::dpiLight, {RGBEffect::off, {}, std::nullopt, 127 / 255.0, 0.1}}},
    .buttonMappings = {{MouseButton::left, ButtonAction::leftClick()},
                       {MouseButton::dpiUp, ButtonAction::dpiChange(INT64_MIN)},
                       {MouseButton::clutch, ButtonAction::keyPress("ctrl+ą\"")},
                       {MouseButton::profile, ButtonAction::other({0, 255})}},
    .hyperScrollEnabled = true,
    .scrollWheelMode = ScrollWheelMode::freeScroll,
};
const std::string sampleText =
    R"({"dpiStages":[{"index":0,"dpi":800,"color":"red"},{"index":7,"dpi":-1,"color":"cyan"}],)"
    R"("currentDPIStage":-7,"pollingRate":1000,"rgbSettings":["logo",{"effect":"static",)"
    R"("color":{"r":0,"g":255,"b":0},"secondaryColor":{"r":4,"g":5,"b":6},"brightness":1.0,"speed":0.5},)"
    R"("dpi_light",{"effect":"off","color":{"r":0,"g":0,"b":0},"brightness":0.4980392156862745,"speed":0.1}],)"
    R"("buttonMappings":["left",{"leftClick":{}},"dpi_up",{"dpiChange":{"_0":-9223372036854775808}},)"
    R"("clutch",{"keyPress":{"_0":"ctrl+ą\""}},"profile",{"other":{"_0":[0,255]}}],)"
    R"("hyperScrollEnabled":true,"scrollWheelMode":"free_scroll"})";

TEST(StoredForm, RoundTripsAsTheAgreedText)
{
    EXPECT_EQ(encode(sample), sampleText);
    EXPECT_EQ(decodeDeviceState(sampleText), sample);
    DeviceState state;
    state.buttonMappings.emplace(MouseButton::left, ButtonAction::macroPlay("a\xFF"));
    EXPECT_THAT(encode(state).value(), HasSubstr("\"a\uFFFD\""));
    for (const auto member : {&RGBSetting::brightness, &RGBSetting::speed}) {
        for (const double number : {NAN, INFINITY, -INFINITY}) {
            state.rgbSettings[RGBZone::logo] = {};
            state.rgbSettings[RGBZone::logo].*member = number;
            EXPECT_EQ(encode(state), std::nullopt);
        }
    }
}

/// One change of a good record, and what it does.
struct Change {
    std::string pointer; ///< JSON pointer
    std::string value;   ///< JSON text; empty takes the member away
    std::string failure; ///< part of the message; empty when the record still decodes
};

TEST(StoredForm, AcceptsAndRefusesEachMemberByItsRules)
{
    const std::string logo = "/rgbSettings/1";
    const std::string action = "/buttonMappings/1";
    const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    for (const auto &change : std::vector<Change>{
             // Integers: whole numbers of any spelling, within 64 bits exactly.
             {"/pollingRate", "1e3", ""},
             {"/pollingRate", "9223372036854775807.000", ""},
             {"/pollingRate", "-9223372036854775808", ""},
             {"/pollingRate", "9223372036854775808",
              "pollingRate: a whole number within 64 bits is expected"},
             {"/pollingRate", "-9223372036854775809", "pollingRate: a whole number"},
             {"/pollingRate", "9223372036854775807.5", "pollingRate: a whole number"},
             {"/pollingRate", "1e-400", "pollingRate: a whole number"},
             {"/pollingRate", "1e999", "number overflow"},
             {"/pollingRate", "true", "pollingRate: a whole number"},
             {"/pollingRate", "null", "\"pollingRate\" is missing"},
             // Members: all but one are required, strangers are ignored.
             {"/hyperScrollEnabled", "1", "hyperScrollEnabled: true or false"},
             {"/stranger", nested(511), ""},
             {"/stranger", nested(512), "nested too deeply"},
             {"/dpiStages", "{}", "dpiStages: an array"},
             {"/dpiStages/1/color", "\"pink\"", "dpiStages[1].color: \"pink\" is not one of red, orange"},
             {"/dpiStages/1/color", '"' + std::string(59, 'p') + "łł\"",
              "color: \"" + std::string(59, 'p') + "…\" is"},
             {"/dpiStages/1/index", "", "dpiStages[1]: \"index\" is missing"},
             {logo + "/secondaryColor", "null", ""},
             {logo + "/secondaryColor", "7", "rgbSettings[1].secondaryColor: an object"},
             {logo + "/speed", "\"fast\"", "rgbSettings[1].speed: a number"},
             {logo + "/color/g", "256", "rgbSettings[1].color.g: 256 is outside"},
             {logo + "/color/b", "-1e2", "rgbSettings[1].color.b: -100 is outside"},
             {logo + "/color/b", "0.0", ""},
             // Maps: pairs, keys by their stored names.
             {"/rgbSettings/0", "\"scrollWheel\"", "rgbSettings[0]: \"scrollWheel\" is not one of"},
             {"/rgbSettings", "[1,2,3]", "rgbSettings: keys and values"},
             // Actions.
             {action, R"({"note":{}})", "Invalid number of keys found, expected one."},
             {action, R"({"back":{},"leftClick":{}})", "Invalid number of keys found, expected one."},
             {action, R"({"leftClick":{"_0":1},"note":2})", ""},
             {action, R"({"dpiChange":{}})", "dpiChange: \"_0\" is missing"},
             {action, R"({"dpiChange":{"_0":"2"}})", "dpiChange._0: a whole number"},
             {action, R"({"other":{"_0":[1,256]}})", "other._0[1]: 256 is outside"},
         }) {
        auto record = json::parse(sampleText);
        const json::json_pointer pointer(change.pointer);
        if (change.value.empty()) {
            record.at(pointer.parent_pointer()).erase(pointer.back());
        } else {
            record[pointer] = "HERE"; // replaced below, so that a number keeps its spelling
        }
        auto text = record.dump();
        if (const auto at = text.find("\"HERE\""); at != std::string::npos) {
            text.replace(at, 6, change.value);
        }
        std::string failure;
        const bool isDecoded = decodeDeviceState(text, &failure).has_value();
        EXPECT_EQ(isDecoded, change.failure.empty()) << change.pointer << change.value << failure;
        EXPECT_THAT(failure, HasSubstr(change.failure)) << change.pointer << change.value;
    }
}

TEST(StoredForm, TheLastOfDuplicateKeysCounts)
{
    auto text = sampleText;
    text.replace(text.find("dpi_up"), 6, "left");
    const auto decoded = decodeDeviceState(text).value_or(DeviceState());
    EXPECT_EQ(decoded.buttonMappings.at(MouseButton::left), ButtonAction::dpiChange(INT64_MIN));
}

TEST(StoredForm, RejectsTextThatIsNoRecord)
{
    const std::string zero(1, '\0');
    const std::string texts[]{"", "null", "{}{}", "{\"a\":NaN}", sampleText + zero, sampleText + zero + 'x'};
    for (const auto &text : texts) {
        std::string failure;
        EXPECT_EQ(decodeDeviceState(text, &failure), std::nullopt);
        EXPECT_FALSE(failure.empty());
    }
}

} // namespace
} // namespace kelmoth
