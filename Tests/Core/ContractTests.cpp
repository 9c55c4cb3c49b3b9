// What mice and stored files understand: the words, numbers and bytes, held exactly.

#include "Core/Device/DeviceState.h"
#include "Core/Device/KeyboardShortcut.h"
#include "Core/HID/RazerProtocol.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <sstream>

namespace kelmoth {
namespace {

using namespace command;
using namespace RazerProtocol;

/// Some bytes of the request for a command, in hexadecimal.
std::string bytesOf(const RazerCommand &command, std::size_t from, std::size_t count)
{
    const auto report = createReport(command, {});
    return QByteArray(reinterpret_cast<const char *>(report.data() + from), static_cast<int>(count))
        .toHex()
        .toStdString();
}

/// Every case: its stored word, and what is sent for it.
template <class E, class F> std::string listed(F sent)
{
    std::string text;
    for (const E value : allCases<E>()) {
        text += std::string(rawValue(value)) + " " + sent(value) + ", ";
    }
    return text;
}

TEST(Contract, OfWordsAndBytes)
{
    EXPECT_EQ(listed<MouseButton>([](auto button) { return bytesOf(getButtonMapping{button}, 9, 1); }),
              "left 01, right 02, middle 03, forward 05, back 04, dpi_up 60, dpi_down 6a, scroll_up 09, "
              "scroll_down 0a, clutch 0f, profile 0e, ");
    EXPECT_EQ(listed<RGBZone>([](auto zone) { return bytesOf(getBrightness{zone}, 9, 1); }),
              "scroll_wheel 01, logo 04, underglow 0a, dpi_light 02, ");
    EXPECT_EQ(listed<RGBEffect>([](auto effect) {
                  const setRGB set{RGBZone::logo, {effect, {0xAA, 0xBB, 0xCC}, RGBColor{}, 1, 1}};
                  return bytesOf(set, 5, 1) + bytesOf(set, 10, 8);
              }),
              "off 060000000000000000, static 0901000001aabbcc00, breathing 0902010001aabbcc00, "
              "spectrum 060300000000000000, wave 060401280000000000, reactive 0905000201aabbcc00, "
              "starlight 0902010001aabbcc00, ripple 060200000000000000, ");
    EXPECT_EQ(listed<DPIStageColor>([](auto) { return ""; }),
              "red , orange , yellow , green , blue , purple , cyan , white , ");
    EXPECT_EQ(listed<ScrollWheelMode>([](auto) { return ""; }), "tactile , free_scroll , smart_reel , ");
    std::string actions;
    for (int i = 0; i <= static_cast<int>(ButtonAction::Case::other); ++i) {
        const auto which = static_cast<ButtonAction::Case>(i);
        const ButtonAction::Value values[]{{}, 0, "f12", Data{9, 8}};
        const auto action = ButtonAction::make(which, values[static_cast<int>(valueType(which))]);
        actions += std::string(storedName(which)) + " " +
                   bytesOf(setButtonMapping{MouseButton::left, *action}, 11, 7) + ", ";
    }
    EXPECT_EQ(actions,
              "leftClick 01010100000000, rightClick 01010200000000, middleClick 01010300000000, "
              "forward 01010500000000, back 01010400000000, scrollUp 01010900000000, "
              "scrollDown 01010a00000000, disabled 00000000000000, dpiChange 06010600000000, "
              "profileSwitch 07010400000000, hypershift 0c010100000000, keyPress 02020045000000, "
              "macroPlay 00000000000000, doubleClick 0b010100000000, scrollModeToggle 12010100000000, "
              "other 09080000000000, ");
    std::ostringstream keys;
    for (const auto name : keyNames()) {
        keys << name << '=' << int{keyToHIDCode(name)} << ' ';
    }
    EXPECT_EQ(keys.str(),
              "a=4 b=5 c=6 d=7 e=8 f=9 g=10 h=11 i=12 j=13 k=14 l=15 m=16 n=17 o=18 p=19 q=20 r=21 s=22 t=23 "
              "u=24 v=25 w=26 x=27 y=28 z=29 0=39 1=30 2=31 3=32 4=33 5=34 6=35 7=36 8=37 9=38 f1=58 f2=59 "
              "f3=60 f4=61 f5=62 f6=63 f7=64 f8=65 f9=66 f10=67 f11=68 f12=69 esc=41 tab=43 space=44 "
              "enter=40 backspace=42 up=82 down=81 left=80 right=79 ");
    EXPECT_EQ(keyToHIDCode("return"), 40);
    EXPECT_EQ(keyToHIDCode("Escape"), 41);
    EXPECT_EQ(keyToHIDCode("delete"), 42);
}

TEST(Contract, OfTheDefaultsWithoutAMouse)
{
    EXPECT_EQ(
        encode(DeviceState::defaultState()),
        R"({"dpiStages":[{"index":0,"dpi":400,"color":"red"},{"index":1,"dpi":800,"color":"orange"},)"
        R"({"index":2,"dpi":1600,"color":"yellow"},{"index":3,"dpi":3200,"color":"green"},)"
        R"({"index":4,"dpi":6400,"color":"blue"}],"currentDPIStage":2,"pollingRate":1000,"rgbSettings":[],)"
        R"("buttonMappings":["left",{"leftClick":{}},"right",{"rightClick":{}},"middle",)"
        R"({"middleClick":{}},"forward",{"forward":{}},"back",{"back":{}},"dpi_up",{"dpiChange":{"_0":0}},)"
        R"("dpi_down",{"dpiChange":{"_0":0}},"scroll_up",{"scrollUp":{}},"scroll_down",{"scrollDown":{}},)"
        R"("clutch",{"hypershift":{}},"profile",{"profileSwitch":{"_0":0}}],)"
        R"("hyperScrollEnabled":false,"scrollWheelMode":"tactile"})");
}

TEST(Contract, OfEachModel)
{
    std::ostringstream models;
    for (const auto &model : basiliskModels()) {
        models << std::hex << rawValue(model.productID) << ' ' << int{model.dpiTransactionID} << std::dec
               << ' ' << model.reportIndex << ' ' << model.waitTimeUs << ' ' << model.name << ", "
               << model.connectionLabel << '\n';
    }
    EXPECT_EQ(models.str(), "99 ff 3 10000 Razer Basilisk V3, USB cable\n"
                            "aa 1f 0 60000 Razer Basilisk V3 Pro (Wired), USB cable\n"
                            "ab 1f 0 60000 Razer Basilisk V3 Pro (Wireless), 2.4 GHz receiver\n"
                            "b9 1f 0 60000 Razer Basilisk V3 X HyperSpeed, 2.4 GHz receiver\n"
                            "ac 1f 0 60000 Razer Basilisk V3 Pro, 2.4 GHz receiver\n"
                            "ba 1f 0 60000 Razer Basilisk V3 X HyperSpeed, 2.4 GHz receiver\n");
    const auto words = [](const auto &values) {
        std::vector<std::string_view> all;
        std::ranges::transform(values, std::back_inserter(all), [](auto value) { return rawValue(value); });
        return all;
    };
    for (const auto &[productID, expected] : {
             std::pair{0x00AB, R"((30000, 5, 11, { 125, 500, 1000, 4000 }, { 400, 800, 1600, 3200, 6400 }, )"
                               R"({ 400, 800, 1600, 3200, 6400, 12000, 20000, 30000 }, true, true, true, )"
                               R"({ "scroll_wheel", "logo", "underglow" }, )"
                               R"({ "off", "static", "spectrum", "wave" }))"},
             {0x00BA,
              R"((18000, 5, 6, { 125, 500, 1000 }, { 400, 800, 1600, 2400, 3200 }, )"
              R"({ 400, 800, 1600, 2400, 3200, 6400, 12000, 18000 }, true, false, false, )"
              R"({ "scroll_wheel" }, { "off", "static", "breathing", "spectrum", "wave", "reactive" }))"},
             {0x0099, R"((26000, 5, 11, { 125, 500, 1000 }, { 400, 800, 1600, 3200, 6400 }, )"
                      R"({ 400, 800, 1600, 3200, 6400, 12000, 18000, 26000 }, false, false, true, )"
                      R"({ "scroll_wheel", "logo", "underglow" }, { "off", "static", "spectrum", "wave" }))"},
             {0x0000, R"((16000, 5, 5, { 125, 500, 1000 }, { 400, 800, 1600, 3200, 6400 }, )"
                      R"({ 400, 800, 1600, 2400, 3200, 6400, 10000, 16000 }, false, false, false, )"
                      R"({ "scroll_wheel" }, { "off", "static" }))"},
         }) {
        const auto &model = DeviceCapabilities::forDevice(static_cast<std::uint16_t>(productID));
        EXPECT_EQ(testing::PrintToString(std::tuple(
                      model.maxDPI, model.dpiStages, model.buttonCount, model.pollingRates,
                      model.factoryDPIPresets, model.dpiQuickPresets, model.hasBattery, model.reportsCharging,
                      model.hasHyperScroll, words(model.rgbZones), words(model.rgbEffects))),
                  expected);
    }
}

} // namespace
} // namespace kelmoth
