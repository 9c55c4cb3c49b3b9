#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/DeviceReader.h"
#include "Tests/Core/SimulatedMouseFixture.h"

namespace kelmoth {
namespace {

using testing::ElementsAre;
using Kind = SimulatedFault::Kind;

class DeviceReaderTest : public SimulatedMouseTest {
protected:
    DeviceReading read(DeviceState base, bool full = true)
    {
        return QCoro::waitFor(readDevice(monitor.get(), device(), std::move(base), full));
    }
};

TEST_F(DeviceReaderTest, FindsTheFactorySettingsOfEachModel)
{
    for (const auto &model : basiliskModels()) {
        plugIn(model.commandLineName);
        const auto reading = read({});
        auto expected = createDefaultState(device());
        expected.pollingRate = 0; // which no mouse tells
        expected.currentDPIStage = mouse->state().activeStage - 1;
        EXPECT_EQ(reading.state, expected) << model.commandLineName;
        EXPECT_EQ(reading.liftOffLevel, mouse->state().liftOff);
        EXPECT_TRUE(reading.unanswered.empty());
        const auto &has = device().capabilities();
        EXPECT_EQ(takeAttempts(), 1 + 2 * std::ssize(has.rgbZones) + has.buttonCount + 1);
    }
}

TEST_F(DeviceReaderTest, KeepsWhatTheMouseDidNotSay)
{
    plugIn("basilisk-v3");
    auto base = createDefaultState(device());
    base.rgbSettings[RGBZone::logo].color = {7, 7, 7};
    base.buttonMappings.insert_or_assign(MouseButton::clutch, ButtonAction::back());
    mouse->addFault({.kind = Kind::rejected, .commandID = 0x86});            // stages
    mouse->addFault({.kind = Kind::rejected, .commandID = 0x84, .skip = 1}); // brightness of the logo
    mouse->addFault({.kind = Kind::rejected, .commandID = 0x8C, .skip = 9}); // the tenth button
    mouse->addFault({.kind = Kind::rejected, .commandID = 0x8B});            // lift-off
    const auto reading = read(base);
    EXPECT_THAT(reading.unanswered.words(),
                ElementsAre("DPI stages", "lighting of logo", "button clutch", "lift-off distance"));
    EXPECT_EQ(reading.state, base);
}

TEST_F(DeviceReaderTest, FitsWhatTheMouseHoldsToWhatTheModelOffers)
{
    plugIn("basilisk-v3");
    auto base = createDefaultState(device());
    base.dpiStages.resize(2);
    base.dpiStages[1].color = DPIStageColor::cyan;
    auto held = mouse->state();
    held.dpiStages = {100, 200, 300};
    held.activeStage = 3;
    held.lights[RGBZone::logo] = {.effect = 2, .parameters = {0, 0, 1, 10, 20, 30}, .brightness = 51};
    mouse->setState(held);
    const auto state = read(base).state;
    using enum DPIStageColor;
    EXPECT_THAT(state.dpiStages,
                ElementsAre(DPIStage{0, 100, red}, DPIStage{1, 200, cyan}, DPIStage{2, 300, yellow}));
    EXPECT_EQ(state.currentDPIStage, 2);
    EXPECT_EQ(state.rgbSettings.at(RGBZone::logo),
              (RGBSetting{RGBEffect::staticColor, {10, 20, 30}, std::nullopt, 0.2, 0.5}));

    takeAttempts();
    EXPECT_EQ(read(base, false).state.dpiStages, state.dpiStages);
    EXPECT_EQ(takeAttempts(), 1);
}

} // namespace
} // namespace kelmoth
