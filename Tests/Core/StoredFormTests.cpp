#include "Core/Device/DeviceState.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace kelmoth {
namespace {

using nlohmann::json;
using testing::HasSubstr;

/// A record that has something everywhere.
DeviceState rich()
{
    DeviceState state = DeviceState::defaultState();
    state.currentDPIStage = -7;
    state.pollingRate = 4000;
    state.rgbSettings[RGBZone::logo] = {RGBEffect::staticColor, {0, 255, 0}, std::nullopt, 1.0, 0.5};
    state.rgbSettings[RGBZone::dpiLight] = {
        RGBEffect::ripple, {1, 2, 3}, RGBColor{4, 5, 255}, 127 / 255.0, 0.1};
    state.buttonMappings.insert_or_assign(MouseButton::clutch, ButtonAction::keyPress("ctrl+ą\""));
    state.buttonMappings.insert_or_assign(MouseButton::profile, ButtonAction::other({0, 255, 7, 0, 0, 0, 1}));
    state.buttonMappings.insert_or_assign(MouseButton::dpiUp, ButtonAction::dpiChange(INT64_MIN));
    state.buttonMappings.insert_or_assign(MouseButton::dpiDown, ButtonAction::macroPlay("mój"));
    state.hyperScrollEnabled = true;
    state.scrollWheelMode = ScrollWheelMode::freeScroll;
    return state;
}

TEST(StoredForm, ComesBackEqual)
{
    EXPECT_EQ(decodeDeviceState(encode(DeviceState::defaultState())), DeviceState::defaultState());
    EXPECT_EQ(decodeDeviceState(encode(rich())), rich());
}

TEST(StoredForm, IsTheAgreedText)
{
    DeviceState state;
    state.dpiStages = {{0, 800, DPIStageColor::red}};
    state.pollingRate = 1000;
    state.rgbSettings[RGBZone::logo] = {RGBEffect::staticColor, {0, 255, 0}, std::nullopt, 1.0, 0.5};
    state.buttonMappings.emplace(MouseButton::dpiUp, ButtonAction::dpiChange(0));
    state.buttonMappings.emplace(MouseButton::left, ButtonAction::leftClick());
    EXPECT_EQ(encode(state),
              R"({"dpiStages":[{"index":0,"dpi":800,"color":"red"}],"currentDPIStage":0,"pollingRate":1000,)"
              R"("rgbSettings":["logo",{"effect":"static","color":{"r":0,"g":255,"b":0},"brightness":1.0,)"
              R"("speed":0.5}],"buttonMappings":["left",{"leftClick":{}},"dpi_up",{"dpiChange":{"_0":0}}],)"
              R"("hyperScrollEnabled":false,"scrollWheelMode":"tactile"})");
    const auto defaults = json::parse(encode(DeviceState::defaultState()));
    EXPECT_EQ(defaults["rgbSettings"], json::array());
    EXPECT_EQ(defaults["buttonMappings"].size(), 22U);
}

/// One change of a good record, and what it does.
struct Change {
    std::string pointer; ///< JSON pointer
    std::string value;   ///< JSON text; empty takes the member away
    std::string failure; ///< part of the message; empty when the record still decodes
};

TEST(StoredForm, AcceptsAndRefusesEachMemberByItsRules)
{
    const std::string setting = "/rgbSettings/1"; // of the logo
    const std::vector<Change> changes{
        // Integers: whole numbers of any spelling, within 64 bits exactly.
        {"/pollingRate", "1.0", ""},
        {"/pollingRate", "1e3", ""},
        {"/pollingRate", "1250E-1", ""},
        {"/pollingRate", "0.0e-5", ""},
        {"/pollingRate", "9223372036854775807", ""},
        {"/pollingRate", "9223372036854775807.000", ""},
        {"/pollingRate", "-9223372036854775808", ""},
        {"/pollingRate", "9223372036854775808", "pollingRate: a whole number"},
        {"/pollingRate", "-9223372036854775809", "pollingRate: a whole number"},
        {"/pollingRate", "9223372036854775807.5", "pollingRate: a whole number"},
        {"/pollingRate", "1e19", "pollingRate: a whole number"},
        {"/pollingRate", "1.5", "pollingRate: a whole number"},
        {"/pollingRate", "1e-400", "pollingRate: a whole number"},
        {"/pollingRate", "1e999", "number overflow"},
        {"/pollingRate", "true", "pollingRate: a whole number"},
        {"/pollingRate", "\"1000\"", "pollingRate: a whole number"},
        {"/pollingRate", "null", "\"pollingRate\" is missing"},
        // Members: all but one are required, strangers are ignored.
        {"/hyperScrollEnabled", "", "\"hyperScrollEnabled\" is missing"},
        {"/hyperScrollEnabled", "1", "hyperScrollEnabled: true or false"},
        {"/stranger", R"({"deep":[[[]]]})", ""},
        {"/dpiStages", "{}", "dpiStages: an array"},
        {"/dpiStages", "[]", ""},
        {"/dpiStages/2/color", "\"pink\"", "dpiStages[2].color: \"pink\" is not one of red, orange"},
        {"/dpiStages/2/index", "", "dpiStages[2]: \"index\" is missing"},
        {"/dpiStages/2", "3", "dpiStages[2]: an object"},
        {"/scrollWheelMode", "\"smartReel\"", "scrollWheelMode: \"smartReel\""},
        {"/scrollWheelMode", "\"smart_reel\"", ""},
        {setting + "/secondaryColor", "null", ""},
        {setting + "/secondaryColor", "7", "rgbSettings[1].secondaryColor: an object"},
        {setting + "/brightness", "1", ""},
        {setting + "/brightness", "", "\"brightness\" is missing"},
        {setting + "/speed", "\"fast\"", "rgbSettings[1].speed: a number"},
        {setting + "/color/g", "256", "rgbSettings[1].color.g: 256 is outside"},
        {setting + "/color/g", "-1", "-1 is outside"},
        {setting + "/color/g", "255.0", ""},
        // Maps: pairs, keys by their stored names.
        {"/rgbSettings/0", "\"scrollWheel\"", "rgbSettings[0]: \"scrollWheel\" is not one of scroll_wheel"},
        {"/rgbSettings/0", "3", "rgbSettings[0]: a string"},
        {"/rgbSettings", "[1,2,3]", "rgbSettings: keys and values"},
        {"/rgbSettings", "{}", "rgbSettings: an array"},
        // Actions.
        {"/buttonMappings/1", "{}", "Invalid number of keys found, expected one."},
        {"/buttonMappings/1", R"({"note":{}})", "Invalid number of keys found, expected one."},
        {"/buttonMappings/1", R"({"back":{},"leftClick":{}})", "Invalid number of keys found, expected one."},
        {"/buttonMappings/1", R"({"leftClick":{"_0":1},"note":2})", ""},
        {"/buttonMappings/1", R"({"leftClick":[]})", "an object is expected"},
        {"/buttonMappings/1", R"({"dpiChange":{}})", "dpiChange: \"_0\" is missing"},
        {"/buttonMappings/1", R"({"dpiChange":{"_0":"2"}})", "dpiChange._0: a whole number"},
        {"/buttonMappings/1", R"({"keyPress":{"_0":2}})", "keyPress._0: a string"},
        {"/buttonMappings/1", R"({"other":{"_0":[1,256]}})", "other._0[1]: 256 is outside"},
        {"/buttonMappings/1", R"("leftClick")", "buttonMappings[1]: an object"},
    };
    for (const auto &change : changes) {
        auto record = json::parse(encode(rich()));
        const json::json_pointer pointer(change.pointer);
        if (change.value.empty()) {
            record.at(pointer.parent_pointer()).erase(pointer.back());
        } else {
            record[pointer] = "\x01"; // replaced below, so that the number keeps its spelling
        }
        auto text = record.dump();
        if (const auto at = text.find("\"\\u0001\""); at != std::string::npos) {
            text.replace(at, 8, change.value);
        }
        std::string failure;
        const auto decoded = decodeDeviceState(text, &failure);
        EXPECT_EQ(decoded.has_value(), change.failure.empty())
            << change.pointer << " " << change.value << failure;
        EXPECT_THAT(failure, HasSubstr(change.failure)) << change.pointer << " " << change.value;
    }
}

TEST(StoredForm, OfAKeyThatOccursTwiceTheLastValueCounts)
{
    auto record = json::parse(encode(DeviceState::defaultState()));
    record["buttonMappings"] =
        json::parse(R"(["left",{"back":{}},"right",{"back":{}},"left",{"forward":{}}])");
    const auto decoded = decodeDeviceState(record.dump());
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->buttonMappings,
              (std::map<MouseButton, ButtonAction>{{MouseButton::left, ButtonAction::forward()},
                                                   {MouseButton::right, ButtonAction::back()}}));
    // The order of the entries carries no meaning.
    record["buttonMappings"] = json::parse(R"(["right",{"back":{}},"left",{"forward":{}}])");
    EXPECT_EQ(decodeDeviceState(record.dump()), decoded);
}

TEST(StoredForm, RefusesTextThatIsNoRecord)
{
    std::vector<std::string> texts{"",     "null",       "[]", "{", "{}{}", std::string("\0", 1),
                                   "\xFF", "{\"a\":NaN}"};
    texts.push_back(std::string(100'000, '['));
    for (const auto &text : texts) {
        std::string failure;
        EXPECT_EQ(decodeDeviceState(text, &failure), std::nullopt);
        EXPECT_FALSE(failure.empty());
    }
    // Many members cost no more than their number.
    std::string wide = "{";
    for (int i = 0; i < 200'000; ++i) {
        wide += "\"m" + std::to_string(i) + "\":0,";
    }
    EXPECT_EQ(decodeDeviceState(wide + "\"last\":0}"), std::nullopt);
}

TEST(StoredForm, StoresTextThatIsNotUTF8)
{
    DeviceState state;
    state.buttonMappings.emplace(MouseButton::left, ButtonAction::macroPlay("a\xFF"));
    const auto decoded = decodeDeviceState(encode(state));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->buttonMappings.at(MouseButton::left), ButtonAction::macroPlay("a\uFFFD"));
}

} // namespace
} // namespace kelmoth
