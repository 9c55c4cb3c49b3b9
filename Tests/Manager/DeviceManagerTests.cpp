// The choice of the mouse, and reading it.

#include "Core/Device/DeviceDefaults.h"
#include "Tests/Manager/DeviceManagerFixture.h"

#include <QSignalSpy>

namespace kelmoth {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(DeviceManagerTest, PrefersTheFirstMouseThatCanBeConfigured)
{
    RazerDevice bluetooth;
    bluetooth.vendorID = razerVendorID;
    bluetooth.productID = 0x0099;
    bluetooth.transport = "Bluetooth";
    RazerDevice receiver = bluetooth;
    receiver.id = QUuid::createUuid();
    receiver.transport = "USB";
    RazerDevice second = receiver;
    second.id = QUuid::createUuid();
    const std::vector all{bluetooth, receiver, second};
    EXPECT_EQ(DeviceManager::preferredDevice(all), receiver);
    EXPECT_EQ(DeviceManager::preferredDevice(std::span(all).first(1)), bluetooth);
    EXPECT_EQ(DeviceManager::preferredDevice({}), std::nullopt);
}

TEST_F(DeviceManagerTest, ReadsAMouseThatItHasChosenAndSavesWhatItSays)
{
    plugIn({"basilisk-v3:bluetooth", "basilisk-v3-pro-wired"});
    EXPECT_TRUE(manager->isConnected());
    EXPECT_EQ(manager->connectedDevice()->productID, 0x00AA);
    EXPECT_EQ(manager->liftOffLevel(), 1);
    EXPECT_EQ(stored(0x00AA), manager->deviceState());
    EXPECT_EQ(stored(0x0099), std::nullopt);
    EXPECT_TRUE(manager->connectedDevice()->batteryLevel); // a new record of the same mouse
    EXPECT_THAT(messages, IsEmpty());

    // What the mouse cannot be asked for comes from what was saved; the rest from the mouse.
    auto saved = manager->deviceState();
    saved.pollingRate = 4000;
    saved.scrollWheelMode = ScrollWheelMode::smartReel;
    saved.dpiStages[0].dpi = 20000;
    defaults->setData("com.kelmoth.deviceState.170", encode(saved));
    plugIn({"basilisk-v3-pro-wired"});
    saved.dpiStages[0].dpi = 400;
    EXPECT_EQ(manager->deviceState(), saved);
}

TEST_F(DeviceManagerTest, ShowsNothingOfAReadBeforeItsEnd)
{
    plugIn({"basilisk-v3"});
    const auto before = manager->deviceState();
    auto state = mouse().state();
    state.dpiStages = {100, 200};
    state.activeStage = 2;
    state.liftOff = 0;
    mouse().setState(state);
    QSignalSpy states(manager.get(), &DeviceManager::deviceStateChanged);
    bool isUntouched = false;
    time->duringPause(18, [&] { // the last of 19 commands
        onMainThread([&] {
            isUntouched = manager->deviceState() == before && manager->liftOffLevel() == 1 && states.empty();
        });
    });
    QCoro::waitFor(manager->refreshFromDevice(true));
    EXPECT_TRUE(isUntouched);
    EXPECT_EQ(states.count(), 1);
    EXPECT_EQ(manager->deviceState().dpiStages.size(), 2U);
    EXPECT_EQ(manager->liftOffLevel(), 0);
    EXPECT_EQ(takeCommands().size(), 19U);

    // A light read asks for the stages alone, and leaves the lift-off level.
    mouse().addFault({.kind = Kind::rejected, .commandID = 0x86});
    QCoro::waitFor(manager->refreshFromDevice(false));
    EXPECT_THAT(takeCommands(), ElementsAre(Code{0x04, 0x86}));
    EXPECT_EQ(states.count(), 2); // assigned, though equal
    EXPECT_EQ(manager->liftOffLevel(), 0);

    mouse().addFault({.kind = Kind::rejected, .commandID = 0x8B});
    QCoro::waitFor(manager->refreshFromDevice(true));
    EXPECT_EQ(manager->liftOffLevel(), std::nullopt);
    EXPECT_THAT(manager->unanswered().words(), ElementsAre("lift-off distance"));
}

TEST_F(DeviceManagerTest, DropsAReadWhoseMouseHasChangedAtAnyWait)
{
    for (int pause = 0; pause < 19; ++pause) {
        defaults->values.clear();
        plugIn({"basilisk-v3", "basilisk-v3-x-hyperspeed"});
        auto state = mouse().state();
        state.dpiStages = {100, 200};
        state.activeStage = 1;
        mouse().setState(state);
        const auto storedBefore = stored(0x0099);
        time->duringPause(pause, [&] {
            mouse().unplug();
            onMainThread([] {});
        });
        QCoro::waitFor(manager->refreshFromDevice(true));
        EXPECT_EQ(manager->connectedDevice()->productID, 0x00B9) << pause;
        EXPECT_EQ(manager->deviceState(), createDefaultState(*manager->connectedDevice())) << pause;
        EXPECT_EQ(stored(0x0099), storedBefore) << pause;
        // The other mouse's own read was put off, and follows.
        settle();
        EXPECT_EQ(manager->liftOffLevel(), 1) << pause;
        EXPECT_EQ(stored(0x00B9), manager->deviceState()) << pause;
    }
}

TEST_F(DeviceManagerTest, GoesOnReadingWhileOtherMiceComeAndGo)
{
    plugIn({"basilisk-v3", "basilisk-v3-pro-wired", "basilisk-v3-x-hyperspeed"});
    const auto chosen = manager->connectedDevice()->id;
    mice[1]->unplug();
    settle();
    auto state = mouse().state();
    state.liftOff = 2;
    mouse().setState(state);
    time->duringPause(3, [this] {
        mice[2]->unplug();
        onMainThread([] {});
    });
    QCoro::waitFor(manager->refreshFromDevice(true));
    time->duringPause(5, [this] {
        mice[1]->replug();
        onMainThread([] {});
    });
    QCoro::waitFor(manager->refreshFromDevice(true));
    settle();
    EXPECT_EQ(manager->connectedDevice()->id, chosen);
    EXPECT_EQ(manager->liftOffLevel(), 2);
    EXPECT_TRUE(manager->isConnected());
}

TEST_F(DeviceManagerTest, KeepsTheSettingsOfAMouseThatHasGoneAndReadsItAnewWhenItReturns)
{
    plugIn({"basilisk-v3"});
    const auto before = manager->deviceState();
    const auto id = manager->connectedDevice()->id;
    mouse().unplug();
    settle();
    EXPECT_EQ(manager->connectedDevice(), std::nullopt);
    EXPECT_FALSE(manager->isConnected());
    EXPECT_EQ(manager->deviceState(), before);
    EXPECT_EQ(manager->liftOffLevel(), 1);

    auto state = mouse().state();
    state.activeStage = 1;
    mouse().setState(state);
    QSignalSpy levels(manager.get(), &DeviceManager::liftOffLevelChanged);
    mouse().replug();
    settle();
    EXPECT_NE(manager->connectedDevice()->id, id);
    EXPECT_EQ(manager->deviceState().currentDPIStage, 0);
    EXPECT_EQ(levels.count(), 2); // unknown first, then as read
}

TEST_F(DeviceManagerTest, ManyFullReadsAskedForDuringOneMakeOneMore)
{
    plugIn({"basilisk-v3"});
    time->hold();
    const auto first = manager->refreshFromDevice(true);
    EXPECT_TRUE(manager->isSyncing());
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(manager->refreshFromDevice(true).isReady());
        EXPECT_TRUE(manager->refreshFromDevice(false).isReady());
    }
    time->release();
    finishAll();
    EXPECT_EQ(takeCommands().size(), 2 * 19U);
}

TEST_F(DeviceManagerTest, MayEndWhileItWaitsForTheMouse)
{
    plugIn({"basilisk-v3"});
    time->hold();
    auto read = manager->refreshFromDevice(true);
    manager.reset();
    time->release();
    QCoro::waitFor(std::move(read));
    plugIn({"basilisk-v3"});
    time->hold();
    auto write = manager->setLiftOff(2);
    manager.reset();
    time->release();
    EXPECT_FALSE(QCoro::waitFor(std::move(write)));
}

TEST_F(DeviceManagerTest, IsReadableFromQML)
{
    plugIn({"basilisk-v3"});
    EXPECT_EQ(manager->property("isConnected"), true);
    EXPECT_EQ(manager->property("liftOffLevel").toInt(), 1);
    EXPECT_EQ(manager->property("deviceState").value<DeviceState>(), manager->deviceState());
    EXPECT_EQ(manager->property("connectedDevice").value<RazerDevice>(), manager->connectedDevice());
}

} // namespace
} // namespace kelmoth
