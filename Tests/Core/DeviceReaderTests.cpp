#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/DeviceReader.h"
#include "Tests/Core/SimulatedMouseFixture.h"

namespace kelmoth {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
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
        const auto reading = read(DeviceState::defaultState());
        auto expected = createDefaultState(device());
        expected.currentDPIStage = mouse->state().activeStage - 1;
        EXPECT_EQ(reading.state.dpiStages.size(), expected.dpiStages.size());
        EXPECT_EQ(reading.state.currentDPIStage, expected.currentDPIStage);
        EXPECT_EQ(reading.state.rgbSettings, expected.rgbSettings) << model.commandLineName;
        for (const auto &[button, action] : expected.buttonMappings) {
            EXPECT_EQ(reading.state.buttonMappings.at(button), action)
                << model.commandLineName << " " << label(button);
        }
        EXPECT_EQ(reading.liftOffLevel, mouse->state().liftOff);
        EXPECT_THAT(reading.unanswered, IsEmpty());
        const auto zones = std::ssize(expected.rgbSettings);
        EXPECT_EQ(takeAttempts(), 1 + 2 * zones + std::ssize(expected.buttonMappings) + 1);
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
    EXPECT_THAT(reading.unanswered,
                ElementsAre("DPI stages", "lighting of logo", "button clutch", "lift-off distance"));
    EXPECT_TRUE(reading.anyAnswer);
    EXPECT_EQ(reading.state, base);
    EXPECT_EQ(reading.liftOffLevel, std::nullopt);
    EXPECT_EQ(takeAttempts(), 1 + 6 + 11 + 1); // nothing is asked twice
}

TEST_F(DeviceReaderTest, TakesTheStagesOfTheMouseInTheColoursOfThePlaces)
{
    plugIn("basilisk-v3");
    auto base = createDefaultState(device());
    base.dpiStages.resize(2);
    base.dpiStages[1].color = DPIStageColor::cyan;
    auto state = mouse->state();
    state.dpiStages = {100, 200, 300, 400};
    state.activeStage = 4;
    mouse->setState(state);
    const auto reading = read(base, false);
    using enum DPIStageColor;
    EXPECT_THAT(reading.state.dpiStages, ElementsAre(DPIStage{0, 100, red}, DPIStage{1, 200, cyan},
                                                     DPIStage{2, 300, yellow}, DPIStage{3, 400, green}));
    EXPECT_EQ(reading.state.currentDPIStage, 3);
    EXPECT_EQ(takeAttempts(), 1);

    // An answer that no mouse of the family can mean is none.
    state.activeStage = 5;
    mouse->setState(state);
    EXPECT_EQ(read(base, false).state, base);
}

TEST_F(DeviceReaderTest, ShowsAnEffectThatIsNotOfferedAsStatic)
{
    plugIn("basilisk-v3");
    auto state = mouse->state();
    state.lights[RGBZone::logo] = {.effect = 2, .parameters = {0, 0, 1, 10, 20, 30}, .brightness = 51};
    state.lights[RGBZone::underglow] = {.effect = 3, .parameters = {}, .brightness = 255};
    mouse->setState(state);
    auto base = createDefaultState(device());
    base.rgbSettings.erase(RGBZone::underglow);
    const auto lights = read(base).state.rgbSettings;
    EXPECT_EQ(lights.at(RGBZone::logo),
              (RGBSetting{RGBEffect::staticColor, {10, 20, 30}, std::nullopt, 0.2, 0.5}));
    EXPECT_EQ(lights.at(RGBZone::underglow),
              (RGBSetting{RGBEffect::spectrum, {0, 255, 0}, std::nullopt, 1.0, 0.5}));
}

TEST_F(DeviceReaderTest, EndsWhenTheMouseIsPulledOut)
{
    for (int transfer = 0; transfer < 38; transfer += 3) {
        plugIn("basilisk-v3");
        const auto base = createDefaultState(device());
        mouse->addFault({.kind = Kind::unplug, .skip = transfer});
        const auto reading = read(base);
        EXPECT_FALSE(reading.unanswered.empty());
        EXPECT_EQ(reading.anyAnswer, transfer > 1);
    }
}

} // namespace
} // namespace kelmoth
