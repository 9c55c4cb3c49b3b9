#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/SavedSettings.h"
#include "Tests/Manager/MemoryDefaults.h"

#include <gmock/gmock.h>

#include <functional>
#include <vector>

namespace kelmoth {
namespace {

RazerDevice device(std::uint16_t productID)
{
    RazerDevice made;
    made.vendorID = razerVendorID;
    made.productID = productID;
    made.transport = "USB";
    return made;
}

TEST(MergeSavedState, TakesOverOnlyWhatTheModelSupports)
{
    struct Row {
        std::string name;
        std::uint16_t productID;
        std::function<void(DeviceState &)> saved;  ///< over the model's defaults
        std::function<void(DeviceState &)> merged; ///< over the model's defaults
    };
    constexpr std::uint16_t pro = 0x00AA;
    constexpr std::uint16_t hyperSpeed = 0x00B9;
    const auto nothing = [](DeviceState &) {};
    const RGBSetting blue{RGBEffect::ripple, {0, 0, 255}, RGBColor{1, 1, 1}, 0.3, 0.9};
    const auto set = [](Int DeviceState::*member, Int value) {
        return [=](DeviceState &state) { state.*member = value; };
    };
    const auto dpi = [](std::size_t stage, Int value) {
        return [=](DeviceState &state) { state.dpiStages[stage].dpi = value; };
    };
    const std::vector<Row> rows{
        {"a stage", hyperSpeed, dpi(1, 18000), dpi(1, 18000)},
        {"a stage beyond the model", hyperSpeed, dpi(1, 25000), nothing},
        {"a stage between steps", pro, dpi(1, 850), nothing},
        {"a stage below all", pro, dpi(1, 50), nothing},
        {"the lowest stage", pro, dpi(4, 100), dpi(4, 100)},
        {"a negative stage", pro, dpi(4, -100), nothing},
        {"numbers and colours of stages", pro,
         [](DeviceState &state) { state.dpiStages[0] = {9, 500, DPIStageColor::white}; }, dpi(0, 500)},
        {"too few stages", pro,
         [](DeviceState &state) {
             state.dpiStages.pop_back();
             state.dpiStages[0].dpi = 500;
             state.currentDPIStage = 4;
         },
         set(&DeviceState::currentDPIStage, 4)},
        {"an active stage", pro, set(&DeviceState::currentDPIStage, 0),
         set(&DeviceState::currentDPIStage, 0)},
        {"an active stage beyond", pro, set(&DeviceState::currentDPIStage, 5), nothing},
        {"a negative active stage", pro, set(&DeviceState::currentDPIStage, -1), nothing},
        {"a polling rate", pro, set(&DeviceState::pollingRate, 4000), set(&DeviceState::pollingRate, 4000)},
        {"a polling rate of others", hyperSpeed, set(&DeviceState::pollingRate, 4000), nothing},
        {"lighting", pro, [=](DeviceState &state) { state.rgbSettings[RGBZone::logo] = blue; },
         [=](DeviceState &state) { state.rgbSettings[RGBZone::logo] = blue; }},
        {"lighting of no zone", hyperSpeed,
         [=](DeviceState &state) { state.rgbSettings[RGBZone::logo] = blue; }, nothing},
        {"a missing zone", pro, [](DeviceState &state) { state.rgbSettings.clear(); }, nothing},
        {"the left button", pro,
         [](DeviceState &state) {
             state.buttonMappings.insert_or_assign(MouseButton::left, ButtonAction::disabled());
         },
         [](DeviceState &state) {
             state.buttonMappings.insert_or_assign(MouseButton::left, ButtonAction::disabled());
         }},
        {"a button of others", hyperSpeed,
         [](DeviceState &state) { state.buttonMappings.emplace(MouseButton::clutch, ButtonAction::back()); },
         nothing},
        {"the wheel", pro, [](DeviceState &state) { state.scrollWheelMode = ScrollWheelMode::freeScroll; },
         [](DeviceState &state) { state.scrollWheelMode = ScrollWheelMode::freeScroll; }},
        {"the wheel of others", hyperSpeed,
         [](DeviceState &state) { state.scrollWheelMode = ScrollWheelMode::freeScroll; }, nothing},
        {"hyper-scroll", pro, [](DeviceState &state) { state.hyperScrollEnabled = true; }, nothing},
    };
    for (const auto &row : rows) {
        auto saved = createDefaultState(device(row.productID));
        auto expected = saved;
        row.saved(saved);
        row.merged(expected);
        EXPECT_EQ(mergeSavedState(saved, device(row.productID)), expected) << row.name;
    }
    EXPECT_EQ(mergeSavedState(std::nullopt, device(pro)), createDefaultState(device(pro)));
}

class SavedSettingsTest : public testing::Test {
protected:
    /// A record of the older kind, or of a product, with an active stage to know it by.
    static std::string record(Int activeStage)
    {
        auto state = createDefaultState(device(0x00AA));
        state.currentDPIStage = activeStage;
        return encode(state);
    }
    Int activeStage(std::uint16_t productID)
    {
        SavedSettings settings(defaults);
        return settings.stateForDevice(device(productID)).currentDPIStage;
    }

    std::shared_ptr<MemoryDefaults> defaults = std::make_shared<MemoryDefaults>();
    std::map<std::string, std::variant<std::int64_t, std::string>, std::less<>> &values = defaults->values;
    static constexpr Int byDefault = 2;
};

TEST_F(SavedSettingsTest, GivesTheOlderRecordToOneDeviceOnly)
{
    values["com.kelmoth.deviceState"] = record(4);
    SavedSettings settings(defaults);
    EXPECT_EQ(settings.stateForDevice(device(0x00AA)).currentDPIStage, 4);
    EXPECT_EQ(std::get<std::int64_t>(values.at("com.kelmoth.deviceState.migrated")), 0x00AA);
    EXPECT_EQ(std::get<std::string>(values.at("com.kelmoth.deviceState.170")), record(4));
    EXPECT_EQ(settings.stateForDevice(device(0x0099)).currentDPIStage, byDefault);
    EXPECT_FALSE(values.contains("com.kelmoth.deviceState.153"));
    EXPECT_EQ(std::get<std::string>(values.at("com.kelmoth.deviceState")), record(4));
}

TEST_F(SavedSettingsTest, LeavesTheOlderRecordWhereAProductHasItsOwn)
{
    values["com.kelmoth.deviceState"] = record(4);
    values["com.kelmoth.deviceState.170"] = record(1);
    EXPECT_EQ(activeStage(0x00AA), 1);
    EXPECT_FALSE(values.contains("com.kelmoth.deviceState.migrated"));
    // Nor does a record that cannot be used call for the older one.
    for (const auto &unusable : {std::string("{"), std::string(), std::string(8'000'000, '['),
                                 "\xFF" + record(3), record(1).substr(0, 200)}) {
        values["com.kelmoth.deviceState.170"] = unusable;
        EXPECT_EQ(activeStage(0x00AA), byDefault);
    }
    EXPECT_FALSE(values.contains("com.kelmoth.deviceState.migrated"));
    EXPECT_EQ(activeStage(0x0099), 4); // the next without one
}

TEST_F(SavedSettingsTest, HonoursTheMarkWhateverItIs)
{
    values["com.kelmoth.deviceState"] = record(4);
    values["com.kelmoth.deviceState.migrated"] = "by hand";
    EXPECT_EQ(activeStage(0x00AA), byDefault);
    EXPECT_FALSE(values.contains("com.kelmoth.deviceState.170"));
    values.erase("com.kelmoth.deviceState.migrated");
    values["com.kelmoth.deviceState"] = "{}"; // not usable: nothing to hand over, and no mark
    EXPECT_EQ(activeStage(0x00AA), byDefault);
    EXPECT_FALSE(values.contains("com.kelmoth.deviceState.migrated"));
}

} // namespace
} // namespace kelmoth
