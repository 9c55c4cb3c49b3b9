#include "Core/Device/DeviceDefaults.h"
#include "Tests/Manager/DeviceManagerFixture.h"

namespace kelmoth {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int basiliskV3 = 0x0099;
const RGBSetting purpleWave{RGBEffect::wave, {128, 0, 128}, std::nullopt, 0.5, 0.25};

/// One writer with a request that it accepts.
struct Writer {
    std::string name;
    std::function<QCoro::Task<bool>(DeviceManager &)> run;
    std::vector<std::pair<int, int>> commands;
    std::string failure;
    std::function<void(DeviceState &)> effect;
};

const std::vector<Writer> &writers()
{
    static const std::vector<Writer> all{
        {"setDPI",
         [](DeviceManager &manager) { return manager.setDPI(900, 1); },
         {{0x04, 0x06}},
         "Failed to set DPI",
         [](DeviceState &state) { state.dpiStages[1].dpi = 900; }},
        {"setDPIStage",
         [](DeviceManager &manager) { return manager.setDPIStage(4); },
         {{0x04, 0x06}},
         "Failed to change DPI stage",
         [](DeviceState &state) { state.currentDPIStage = 4; }},
        {"setRGB",
         [](DeviceManager &manager) { return manager.setRGB(RGBZone::logo, purpleWave); },
         {{0x0F, 0x04}, {0x0F, 0x02}},
         "Failed to set RGB lighting",
         [](DeviceState &state) { state.rgbSettings[RGBZone::logo] = purpleWave; }},
        {"setButtonMapping",
         [](DeviceManager &manager) {
             return manager.setButtonMapping(MouseButton::forward, ButtonAction::dpiChange(2), 3, false);
         },
         {{0x02, 0x0C}, {0x02, 0x0C}, {0x02, 0x8C}},
         "Failed to apply button mapping",
         [](DeviceState &state) {
             state.buttonMappings.insert_or_assign(MouseButton::forward, ButtonAction::dpiChange(2));
         }},
        {"setLiftOff",
         [](DeviceManager &manager) { return manager.setLiftOff(2); },
         {{0x0B, 0x03}, {0x0B, 0x0B}, {0x0B, 0x8B}},
         "Failed to set lift-off distance",
         [](DeviceState &) {}},
    };
    return all;
}

class WriterTest : public DeviceManagerTest {
protected:
    bool run(const Writer &writer) { return finish(writer.run(*manager)); }
};

TEST_F(WriterTest, ChangesTheMouseThenWhatIsShownAndSavedAndNothingBefore)
{
    for (const auto &writer : writers()) {
        defaults->values.clear();
        plugIn({"basilisk-v3"});
        const auto before = manager->deviceState();
        const auto levelBefore = manager->liftOffLevel();
        const auto storedBefore = defaults->values;
        auto expected = before;
        writer.effect(expected);

        bool isUntouched = false;
        time->duringPause(static_cast<int>(writer.commands.size()) - 1, [&] {
            onMainThread([&] {
                isUntouched = manager->deviceState() == before && manager->liftOffLevel() == levelBefore &&
                              defaults->values == storedBefore && messages.empty();
            });
        });
        EXPECT_TRUE(run(writer)) << writer.name;
        EXPECT_TRUE(isUntouched) << writer.name;
        EXPECT_EQ(takeCommands(), writer.commands) << writer.name;
        EXPECT_EQ(manager->deviceState(), expected) << writer.name;
        EXPECT_EQ(stored(basiliskV3), expected) << writer.name;
        EXPECT_EQ(manager->liftOffLevel(), writer.name == "setLiftOff" ? 2 : levelBefore);
        if (writer.name == "setButtonMapping") {
            EXPECT_THAT(messages, ElementsAre("Button remapped"));
        } else {
            EXPECT_THAT(messages, IsEmpty()) << writer.name;
        }
        // The mouse says the same when it is asked.
        QCoro::waitFor(manager->refreshFromDevice(true));
        EXPECT_EQ(manager->deviceState().dpiStages, expected.dpiStages) << writer.name;
        EXPECT_EQ(manager->deviceState().currentDPIStage, expected.currentDPIStage) << writer.name;
        EXPECT_EQ(manager->deviceState().buttonMappings, expected.buttonMappings) << writer.name;
        EXPECT_EQ(manager->deviceState().rgbSettings.at(RGBZone::logo).effect,
                  expected.rgbSettings.at(RGBZone::logo).effect);
    }
}

/// Each command of each writer fails in turn: refused at once, or not answered at all.
TEST_F(WriterTest, LeavesEverythingAsItWasWhenACommandFails)
{
    const std::map<std::pair<std::string, int>, std::vector<Code>> commandsAfter{
        {{"setRGB", 0}, {{0x0F, 0x04}}},
        {{"setRGB", 1}, {{0x0F, 0x04}, {0x0F, 0x02}, {0x0F, 0x04}}}, // the old brightness goes back
        {{"setButtonMapping", 0}, {{0x02, 0x0C}, {0x02, 0x0C}}},     // the other profile all the same
        {{"setButtonMapping", 1}, {{0x02, 0x0C}, {0x02, 0x0C}}},
        {{"setLiftOff", 0}, {{0x0B, 0x03}, {0x0B, 0x8B}}},
    };
    for (const auto &writer : writers()) {
        for (int command = 0; command < std::ssize(writer.commands); ++command) {
            for (const auto kind : {Kind::rejected, Kind::notReady}) {
                const auto [commandClass, commandID] = writer.commands[static_cast<std::size_t>(command)];
                if (kind == Kind::notReady && commandID < 0x80) {
                    continue; // a write counts as taken then
                }
                const auto about = writer.name + " " + std::to_string(command);
                plugIn({"basilisk-v3"});
                const auto before = manager->deviceState();
                const auto storedBefore = defaults->values;
                const auto earlier = std::count(writer.commands.begin(), writer.commands.begin() + command,
                                                std::pair(commandClass, commandID));
                mouse().addFault({.kind = kind,
                                  .commandClass = static_cast<std::uint8_t>(commandClass),
                                  .commandID = static_cast<std::uint8_t>(commandID),
                                  .skip = static_cast<int>(earlier),
                                  .times = kind == Kind::rejected ? 1 : -1});
                EXPECT_FALSE(run(writer)) << about;
                const auto known = commandsAfter.find({writer.name, command});
                EXPECT_EQ(takeCommands(), known == commandsAfter.end() ? writer.commands : known->second)
                    << about;
                EXPECT_EQ(manager->deviceState(), before) << about;
                EXPECT_EQ(defaults->values, storedBefore) << about;
                EXPECT_THAT(messages, ElementsAre(writer.failure)) << about;
                if (writer.name == "setLiftOff") {
                    // What the mouse says now is shown, or that it says nothing.
                    const auto level =
                        command == 2 ? std::nullopt : std::optional<Int>(mouse().state().liftOff);
                    EXPECT_EQ(manager->liftOffLevel(), level) << about;
                }
                mouse().clearFaults();
                EXPECT_TRUE(run(writer)) << about << " afterwards";
            }
        }
    }
}

TEST_F(WriterTest, IsSilentWhenTheMouseChangesDuringAnyWait)
{
    for (const auto &writer : writers()) {
        for (int pause = 0; pause < std::ssize(writer.commands); ++pause) {
            const auto about = writer.name + " " + std::to_string(pause);
            defaults->values.clear();
            plugIn({"basilisk-v3", "basilisk-v3-pro-wired"});
            const auto storedBefore = stored(basiliskV3);
            time->duringPause(pause, [&] {
                mouse().unplug();
                onMainThread([] {});
            });
            EXPECT_FALSE(run(writer)) << about;
            EXPECT_THAT(messages, IsEmpty()) << about;
            EXPECT_EQ(stored(basiliskV3), storedBefore) << about;
            finishAll();
            ASSERT_EQ(manager->connectedDevice()->productID, 0x00AA) << about;
            EXPECT_EQ(manager->deviceState(), stored(0x00AA)) << about;
            auto factory = createDefaultState(*manager->connectedDevice());
            factory.currentDPIStage = mice[1]->state().activeStage - 1;
            EXPECT_TRUE(manager->deviceState() == factory) << about;
            for (const auto &transfer : mice[1]->takeTransfers()) {
                EXPECT_GE(transfer.bytes[7], 0x80) << about << ": nothing is written to the other mouse";
            }
            EXPECT_TRUE(run(writer)) << about << ", to the other mouse";
        }
    }
}

TEST_F(WriterTest, KeepsOthersOutAndLetsAFullReadFollow)
{
    for (const auto &writer : writers()) {
        plugIn({"basilisk-v3"});
        time->hold();
        auto first = writer.run(*manager);
        for (const auto &other : writers()) {
            auto second = other.run(*manager);
            ASSERT_TRUE(second.isReady()) << writer.name << " " << other.name;
            EXPECT_FALSE(QCoro::waitFor(std::move(second)));
        }
        EXPECT_TRUE(manager->refreshFromDevice(false).isReady()); // dropped
        EXPECT_TRUE(manager->refreshFromDevice(true).isReady());  // put off, both together
        EXPECT_TRUE(manager->refreshFromDevice(true).isReady());
        EXPECT_FALSE(manager->isSyncing());
        EXPECT_THAT(messages, IsEmpty()) << writer.name;
        time->release();
        EXPECT_TRUE(QCoro::waitFor(std::move(first))) << writer.name;
        finishAll();
        auto commands = takeCommands();
        EXPECT_EQ(commands.size(), writer.commands.size() + 19) << writer.name;
        EXPECT_EQ(std::ranges::count(commands, Code{0x04, 0x86}), 1) << writer.name;

        // While the mouse is read, nothing is written.
        messages.clear();
        time->hold();
        const auto read = manager->refreshFromDevice(true);
        auto refused = writer.run(*manager);
        ASSERT_TRUE(refused.isReady());
        EXPECT_FALSE(QCoro::waitFor(std::move(refused)));
        EXPECT_THAT(messages, IsEmpty()) << writer.name;
        time->release();
        finishAll();
    }
}

TEST_F(WriterTest, RefusesWhatTheModelDoesNotOffer)
{
    struct Row {
        std::string name;
        std::function<QCoro::Task<bool>(DeviceManager &)> run;
        std::string message; ///< empty for none
    };
    const RGBSetting dim{RGBEffect::staticColor, {1, 2, 3}, std::nullopt, -0.01, 0.5};
    auto bright = dim;
    bright.brightness = 1.2;
    auto unknown = dim;
    unknown.brightness = std::numeric_limits<double>::quiet_NaN();
    auto starlight = dim;
    starlight.brightness = 1.0;
    starlight.effect = RGBEffect::starlight;
    const auto click = ButtonAction::leftClick();
    const std::vector<Row> rows{
        {"DPI between steps", [](auto &m) { return m.setDPI(1650, {}); }, "DPI outside supported range"},
        {"DPI too low", [](auto &m) { return m.setDPI(0, 0); }, "DPI outside supported range"},
        {"DPI too high", [](auto &m) { return m.setDPI(18100, 1); }, "DPI outside supported range"},
        {"no such stage", [](auto &m) { return m.setDPI(800, 5); }, "Invalid DPI stage"},
        {"negative stage", [](auto &m) { return m.setDPI(800, -1); }, "Invalid DPI stage"},
        {"no stage to choose", [](auto &m) { return m.setDPIStage(5); }, ""},
        {"no zone", [=](auto &m) { return m.setRGB(RGBZone::logo, {}); }, ""},
        {"too dim", [=](auto &m) { return m.setRGB(RGBZone::scrollWheel, dim); }, ""},
        {"too bright", [=](auto &m) { return m.setRGB(RGBZone::scrollWheel, bright); }, ""},
        {"no brightness", [=](auto &m) { return m.setRGB(RGBZone::scrollWheel, unknown); }, ""},
        {"no such effect", [=](auto &m) { return m.setRGB(RGBZone::scrollWheel, starlight); }, ""},
        {"profile 6", [=](auto &m) { return m.setButtonMapping(MouseButton::back, click, 6, false); }, ""},
        {"profile -1", [=](auto &m) { return m.setButtonMapping(MouseButton::back, click, -1, false); }, ""},
        {"no button", [=](auto &m) { return m.setButtonMapping(MouseButton::clutch, click, 0, false); }, ""},
        {"left button",
         [](auto &m) { return m.setButtonMapping(MouseButton::left, ButtonAction::back(), 0, false); },
         "Left button always stays Left Click"},
        {"no such level", [](auto &m) { return m.setLiftOff(3); }, ""},
    };
    plugIn({"basilisk-v3-x-hyperspeed"});
    const auto before = manager->deviceState();
    for (const auto &row : rows) {
        EXPECT_FALSE(finish(row.run(*manager))) << row.name;
        EXPECT_EQ(messages, row.message.empty() ? std::vector<std::string>{} : std::vector{row.message})
            << row.name;
        messages.clear();
    }
    EXPECT_EQ(manager->deviceState(), before);
    EXPECT_THAT(takeCommands(), IsEmpty());
    // The ends of the ranges are inside; the active stage stays what it was.
    EXPECT_TRUE(finish(manager->setDPI(18000, 0)));
    EXPECT_TRUE(finish(manager->setDPI(100, std::nullopt)));
    EXPECT_EQ(manager->deviceState().currentDPIStage, before.currentDPIStage);
    EXPECT_EQ(manager->deviceState().dpiStages[static_cast<std::size_t>(before.currentDPIStage)].dpi, 100);
    EXPECT_TRUE(finish(manager->setButtonMapping(MouseButton::left, click, 0, true)));
}

TEST_F(WriterTest, SaysThatThereIsNoMouseWhereAControlCouldStillBeUsed)
{
    plugIn({"basilisk-v3:bluetooth"});
    for (const auto &writer : writers()) {
        EXPECT_FALSE(run(writer)) << writer.name;
    }
    EXPECT_THAT(messages, ElementsAre("No device connected", "No device connected", "No device connected"));
    QCoro::waitFor(manager->refreshFromDevice(true));
    EXPECT_FALSE(manager->isSyncing());
    EXPECT_THAT(defaults->values, IsEmpty());
}

/// The mouse says yes, and does something else.
TEST_F(WriterTest, BelievesWhatIsReadBackAndNotThatItWasAccepted)
{
    plugIn({"basilisk-v3"});
    const auto before = manager->deviceState();
    time->duringPause(0, [this] { // the write is on its way
        auto state = mouse().state();
        state.buttons[{0, MouseButton::back, false}] = ButtonAction::disabled().toButtonFunction();
        mouse().setState(state);
    });
    EXPECT_FALSE(finish(manager->setButtonMapping(MouseButton::back, ButtonAction::doubleClick(), 0, false)));
    EXPECT_THAT(messages, ElementsAre("Failed to apply button mapping"));
    EXPECT_EQ(manager->deviceState(), before);

    time->duringPause(1, [this] {
        auto state = mouse().state();
        state.liftOff = 0;
        mouse().setState(state);
    });
    EXPECT_FALSE(finish(manager->setLiftOff(2)));
    EXPECT_EQ(manager->liftOffLevel(), 0);
}

} // namespace
} // namespace kelmoth
