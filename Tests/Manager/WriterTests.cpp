#include "Core/Device/DeviceDefaults.h"
#include "Tests/Manager/DeviceManagerFixture.h"

namespace kelmoth {

class WriterTest : public DeviceManagerTest {
protected:
    /// One writer with a request that it accepts.
    struct Writer {
        std::string failure;
        std::vector<Code> commands;
        std::function<QCoro::Task<bool>(DeviceManager &)> run;
        std::function<void(DeviceState &)> effect;
        /// What goes out when the first of the commands fails, and so on; absent where all do.
        std::vector<std::vector<Code>> commandsAfterFailure = {};
    };

    static inline const RGBSetting wave{RGBEffect::wave, {128, 0, 128}, std::nullopt, 0.5, 0.25};
    const std::vector<Writer> writers{
        {"Failed to set DPI",
         {{0x04, 0x06}},
         [](auto &m) { return m.setDPI(900, 1); },
         [](auto &state) { state.dpiStages[1].dpi = 900; }},
        {"Failed to change DPI stage",
         {{0x04, 0x06}},
         [](auto &m) { return m.setDPIStage(4); },
         [](auto &state) { state.currentDPIStage = 4; }},
        {"Failed to set RGB lighting",
         {{0x0F, 0x04}, {0x0F, 0x02}},
         [](auto &m) { return m.setRGB(RGBZone::logo, wave); },
         [](auto &state) { state.rgbSettings[RGBZone::logo] = wave; },
         {{{0x0F, 0x04}}, {{0x0F, 0x04}, {0x0F, 0x02}, {0x0F, 0x04}}}}, // the old brightness again
        {"Failed to apply button mapping",
         {{0x02, 0x0C}, {0x02, 0x0C, 3}, {0x02, 0x8C}},
         [](auto &m) { return m.setButtonMapping(MouseButton::back, ButtonAction::dpiChange(2), 3, true); },
         [](auto &state) { state.buttonMappings.at(MouseButton::back) = ButtonAction::dpiChange(2); },
         {{{0x02, 0x0C}, {0x02, 0x0C, 3}}, {{0x02, 0x0C}, {0x02, 0x0C, 3}}}}, // both profiles all the same
        {"Failed to set lift-off distance",
         {{0x0B, 0x03}, {0x0B, 0x0B}, {0x0B, 0x8B}},
         [](auto &m) { return m.setLiftOff(2); },
         [](auto &) {},
         {{{0x0B, 0x03}, {0x0B, 0x8B}}}},
    };

    bool run(const Writer &writer) { return finish(writer.run(*manager)); }

    /// Whether something that would have to wait is refused at once.
    static bool isRefused(QCoro::Task<bool> task)
    {
        return task.isReady() && !QCoro::waitFor(std::move(task));
    }
};

TEST_F(WriterTest, PublishesAndSavesOnlyAfterTheMouseAccepts)
{
    for (const auto &writer : writers) {
        SCOPED_TRACE(writer.failure);
        defaults->values.clear();
        plugIn({"basilisk-v3"});
        const auto before = manager->deviceState();
        const auto storedBefore = defaults->values;
        auto expected = before;
        writer.effect(expected);
        bool isUntouched = false;
        time->duringPause(static_cast<int>(writer.commands.size()) - 1, [&] {
            onMainThread([&] {
                isUntouched = manager->deviceState() == before && manager->liftOffLevel() == 1 &&
                              defaults->values == storedBefore && messages.empty();
            });
        });
        EXPECT_TRUE(run(writer));
        EXPECT_TRUE(isUntouched);
        EXPECT_EQ(takeCommands(), writer.commands);
        EXPECT_EQ(manager->deviceState(), expected);
        EXPECT_EQ(stored(0x0099), expected);
        const bool isMapping = writer.commands[0].second == 0x0C;
        EXPECT_EQ(messages, std::vector<std::string>(isMapping ? 1 : 0, "Button remapped"));
        EXPECT_EQ(manager->liftOffLevel(), writer.commands[0].second == 0x03 ? 2 : 1);
    }
}

/// Each command of each writer fails in turn: refused at once, or a question that is not answered at all.
TEST_F(WriterTest, ChangesNothingWhenACommandFails)
{
    for (const auto &writer : writers) {
        for (std::size_t index = 0; index < writer.commands.size(); ++index) {
            const auto code = writer.commands[index];
            for (const auto kind : {Kind::rejected, Kind::notReady}) {
                if (kind == Kind::notReady && code.second < 0x80) {
                    continue; // a write counts as taken then
                }
                SCOPED_TRACE(writer.failure + " " + std::to_string(index));
                plugIn({"basilisk-v3"});
                const auto before = manager->deviceState();
                const auto storedBefore = defaults->values;
                // Of the two that are alike, the first is at the front.
                const int skip = code.profile != 0 ? 1 : 0;
                mouse().addFault({kind, code.first, code.second, skip, kind == Kind::rejected ? 1 : -1});
                EXPECT_FALSE(run(writer));
                const auto &known = writer.commandsAfterFailure;
                EXPECT_EQ(takeCommands(), index < known.size() ? known[index] : writer.commands);
                EXPECT_EQ(manager->deviceState(), before);
                EXPECT_EQ(mouse().state().lights.at(RGBZone::logo).brightness, 255);
                EXPECT_EQ(defaults->values, storedBefore);
                EXPECT_THAT(messages, ElementsAre(writer.failure));
                // What the mouse says now is shown, or that it says nothing.
                const auto held = std::optional<Int>(mouse().state().liftOff);
                EXPECT_EQ(manager->liftOffLevel(), code.second == 0x8B ? std::nullopt : held);
                mouse().clearFaults();
                EXPECT_TRUE(run(writer)) << "afterwards";
            }
        }
    }
}

/// The mouse is pulled out, or leaves the list and answers all the same.
TEST_F(WriterTest, ShowsNoToastWhenTheMouseChanges)
{
    for (const auto &writer : writers) {
        for (std::size_t wait = 0; wait < 2 * writer.commands.size(); ++wait) {
            SCOPED_TRACE(writer.failure + " " + std::to_string(wait));
            defaults->values.clear();
            plugIn({"basilisk-v3", "basilisk-v3-pro-wired"}, wait >= writer.commands.size());
            const auto storedBefore = stored(0x0099);
            time->duringPause(static_cast<int>(wait % writer.commands.size()), [&] {
                listed.front()->unplug();
                onMainThread([] {});
            });
            EXPECT_FALSE(run(writer));
            EXPECT_THAT(messages, IsEmpty());
            EXPECT_EQ(stored(0x0099), storedBefore);
            finishAll();
            auto factory = createDefaultState(*manager->connectedDevice());
            factory.currentDPIStage = mice[1]->state().activeStage - 1;
            EXPECT_EQ(manager->deviceState(), factory);
            EXPECT_EQ(stored(0x00AA), factory);
            for (const auto &transfer : mice[1]->takeTransfers()) {
                EXPECT_GE(transfer.bytes[7], 0x80) << "nothing is written to the other mouse";
            }
            EXPECT_TRUE(run(writer)) << "to the other mouse";
        }
    }
}

TEST_F(WriterTest, RefusesConcurrentWritesAndDefersAFullRead)
{
    for (const auto &writer : writers) {
        SCOPED_TRACE(writer.failure);
        plugIn({"basilisk-v3"});
        time->hold();
        auto first = writer.run(*manager);
        for (const auto &other : writers) {
            EXPECT_TRUE(isRefused(other.run(*manager))) << other.failure;
        }
        EXPECT_TRUE(manager->refreshFromDevice(true).isReady()); // put off, both together
        EXPECT_TRUE(manager->refreshFromDevice(true).isReady());
        EXPECT_TRUE(manager->refreshFromDevice(false).isReady()); // dropped
        EXPECT_FALSE(manager->isSyncing());
        EXPECT_THAT(messages, IsEmpty());
        time->release();
        EXPECT_TRUE(QCoro::waitFor(std::move(first)));
        finishAll();
        EXPECT_EQ(takeCommands().size(), writer.commands.size() + 19);

        // While the mouse is read, nothing is written, and a light read is forgotten.
        messages.clear();
        time->hold();
        const auto read = manager->refreshFromDevice(true);
        EXPECT_TRUE(isRefused(writer.run(*manager)));
        EXPECT_TRUE(manager->refreshFromDevice(false).isReady());
        EXPECT_THAT(messages, IsEmpty());
        time->release();
        finishAll();
        EXPECT_EQ(takeCommands().size(), 19U);
    }
}

TEST_F(WriterTest, RefusesUnsupportedValues)
{
    plugIn({"basilisk-v3-x-hyperspeed"});
    const auto before = manager->deviceState();
    int count = 0;
    const auto expectRefusal = [&](QCoro::Task<bool> task, const std::vector<std::string> &expected = {}) {
        EXPECT_FALSE(finish(std::move(task))) << "refusal " << ++count;
        EXPECT_EQ(std::exchange(messages, {}), expected) << "refusal " << count;
    };
    for (const Int dpi : {0, 1650, 18100}) {
        expectRefusal(manager->setDPI(dpi, 1), {"DPI outside supported range"});
    }
    for (const Int stage : {-1, 5}) {
        expectRefusal(manager->setDPI(800, stage), {"Invalid DPI stage"});
        expectRefusal(manager->setDPIStage(stage));
    }
    expectRefusal(manager->setRGB(RGBZone::logo, wave));
    // Brightness and speed; what is not a number cannot be saved.
    const std::pair<double, double> levels[]{
        {-0.01, 0.5}, {1.2, 0.5}, {NAN, 0.5}, {0.5, NAN}, {0.5, INFINITY}};
    for (const auto &[brightness, speed] : levels) {
        expectRefusal(manager->setRGB(RGBZone::scrollWheel, {RGBEffect::wave, {}, {}, brightness, speed}));
    }
    expectRefusal(manager->setRGB(RGBZone::scrollWheel, {RGBEffect::starlight, {}, {}, 0.5, 0.5}));
    const auto click = ButtonAction::leftClick();
    for (const Int profile : {-1, 6}) {
        expectRefusal(manager->setButtonMapping(MouseButton::back, click, profile, false));
    }
    expectRefusal(manager->setButtonMapping(MouseButton::clutch, click, 0, false));
    expectRefusal(manager->setButtonMapping(MouseButton::left, ButtonAction::back(), 0, false),
                  {"Left button always stays Left Click"});
    expectRefusal(manager->setLiftOff(3));
    EXPECT_EQ(manager->deviceState(), before);
    EXPECT_THAT(takeCommands(), IsEmpty());
    // The ends of the ranges are inside; the active stage stays what it was.
    EXPECT_TRUE(finish(manager->setDPI(18000, 4)));
    EXPECT_TRUE(finish(manager->setDPI(100, std::nullopt)));
    EXPECT_EQ(manager->deviceState().dpiStages[4].dpi, 18000);
    EXPECT_EQ(manager->deviceState().dpiStages[0].dpi, 100);
    EXPECT_TRUE(finish(manager->setButtonMapping(MouseButton::left, click, 0, true)));
}

TEST_F(WriterTest, ReportsAMissingMouse)
{
    plugIn({"basilisk-v3:bluetooth"});
    for (const auto &writer : writers) {
        EXPECT_FALSE(run(writer)) << writer.failure;
    }
    EXPECT_THAT(messages, ElementsAre("No device connected", "No device connected", "No device connected"));
    EXPECT_THAT(defaults->values, IsEmpty());
}

/// The mouse says yes, and does something else.
TEST_F(WriterTest, PublishesTheValueReadBack)
{
    plugIn({"basilisk-v3"});
    const auto before = manager->deviceState();
    auto other = mouse().state();
    other.buttons[{0, MouseButton::back, false}] = ButtonAction::disabled().toButtonFunction();
    other.liftOff = 0;
    const auto disturb = [&] { mouse().setState(other); };
    time->duringPause(0, disturb); // the write is on its way
    EXPECT_FALSE(finish(manager->setButtonMapping(MouseButton::back, ButtonAction::doubleClick(), 0, false)));
    EXPECT_THAT(messages, ElementsAre("Failed to apply button mapping"));
    EXPECT_EQ(manager->deviceState(), before);

    time->duringPause(1, disturb);
    EXPECT_FALSE(finish(manager->setLiftOff(2)));
    EXPECT_EQ(manager->liftOffLevel(), 0);
    mouse().addFault({.kind = Kind::rejected, .commandID = 0x0B});
    EXPECT_FALSE(finish(manager->setLiftOff(0))) << "which it holds, and has refused";
}

} // namespace kelmoth
