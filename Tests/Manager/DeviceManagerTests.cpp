// The choice of the mouse, what was saved for it, reading it, and how long messages stay.

#include "Core/Device/DeviceDefaults.h"
#include "Tests/Manager/DeviceManagerFixture.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <thread>

namespace kelmoth {

TEST(MergeSavedState, TakesOverOnlyWhatTheModelSupports)
{
    RazerDevice device;
    device.vendorID = razerVendorID;
    device.productID = 0x00AA;
    auto saved = createDefaultState(device);
    saved.dpiStages[1].dpi = 30000;
    saved.dpiStages[4].dpi = 100;
    saved.currentDPIStage = 4;
    saved.pollingRate = 4000;
    saved.rgbSettings[RGBZone::logo] = {RGBEffect::ripple, {0, 0, 255}, RGBColor{1, 1, 1}, 0.3, 0.9};
    saved.buttonMappings.insert_or_assign(MouseButton::left, ButtonAction::disabled());
    saved.buttonMappings.insert_or_assign(MouseButton::clutch, ButtonAction::disabled());
    saved.scrollWheelMode = ScrollWheelMode::freeScroll;
    const auto expected = saved;
    saved.dpiStages[0] = {9, 850, DPIStageColor::white};
    saved.dpiStages[2].dpi = -100;
    saved.rgbSettings.erase(RGBZone::underglow);
    saved.hyperScrollEnabled = true;
    EXPECT_EQ(mergeSavedState(saved, device), expected);

    device.productID = 0x00B9; // with fewer of all
    auto smaller = createDefaultState(device);
    smaller.dpiStages[3].dpi = 3200;
    smaller.dpiStages[4].dpi = 100;
    smaller.currentDPIStage = 4;
    smaller.buttonMappings.insert_or_assign(MouseButton::left, ButtonAction::disabled());
    EXPECT_EQ(mergeSavedState(saved, device), smaller);
    smaller.dpiStages = createDefaultState(device).dpiStages;
    for (const std::size_t count : {6U, 4U}) {
        saved.dpiStages.resize(count);
        EXPECT_EQ(mergeSavedState(saved, device), smaller);
    }
    smaller.currentDPIStage = createDefaultState(device).currentDPIStage;
    for (const Int stage : {-1, 5}) {
        saved.currentDPIStage = stage;
        EXPECT_EQ(mergeSavedState(saved, device), smaller);
    }
}

TEST_F(DeviceManagerTest, AssertsTheMainThread)
{
    plugIn({"basilisk-v3"});
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto elsewhere = [](const auto &call) { std::thread(call).join(); };
    EXPECT_DEBUG_DEATH(elsewhere([&] { (void)manager->setDPIStage(1); }), "currentThread");
    EXPECT_DEBUG_DEATH(elsewhere([&] { (void)manager->refreshFromDevice(true); }), "currentThread");
    EXPECT_DEBUG_DEATH(elsewhere([&] { monitor->stopMonitoring(); }), "currentThread");
}

TEST_F(DeviceManagerTest, ReadsAndSavesTheFirstConfigurableMouse)
{
    plugIn({"basilisk-v3:bluetooth", "basilisk-v3-pro-wired", "basilisk-v3"});
    EXPECT_TRUE(manager->isConnected());
    EXPECT_EQ(manager->connectedDevice()->productID, 0x00AA);
    EXPECT_EQ(stored(0x00AA), manager->deviceState());
    EXPECT_EQ(stored(0x0099), std::nullopt);
    auto unsavable = manager->deviceState();
    unsavable.rgbSettings[RGBZone::logo].speed = NAN;
    EXPECT_FALSE(SavedSettings(defaults).save(unsavable, *manager->connectedDevice()));
    EXPECT_EQ(stored(0x00AA), manager->deviceState());

    // A new record of the same mouse: each list arrives as it was published.
    change(*mice[1], [](auto &state) { state.battery = 128, state.isCharging = false; });
    std::vector<std::pair<std::optional<Int>, bool>> batteries;
    QObject::connect(manager.get(), &DeviceManager::connectedDeviceChanged, manager.get(), [&] {
        batteries.emplace_back(manager->connectedDevice()->batteryLevel,
                               manager->connectedDevice()->isCharging);
    });
    monitor->readBatteryLevel(*manager->connectedDevice());
    settle();
    EXPECT_THAT(batteries, ElementsAre(std::pair(50, true), std::pair(50, false)));

    plugIn({"basilisk-v3:bluetooth", "unknown"});
    EXPECT_FALSE(manager->isConnected());
}

TEST_F(DeviceManagerTest, PublishesAReadOnlyAtItsEnd)
{
    plugIn({"basilisk-v3"});
    const auto before = manager->deviceState();
    change(mouse(), [](auto &state) {
        state.dpiStages = {100, 200};
        state.activeStage = 2;
        state.lights[RGBZone::logo] = {.effect = 2, .parameters = {0, 0, 1, 10, 20, 30}, .brightness = 51};
        state.liftOff = 0;
    });
    auto expected = before;
    expected.dpiStages = {{0, 100, DPIStageColor::red}, {1, 200, DPIStageColor::orange}};
    expected.currentDPIStage = 1;
    // An effect that the model does not offer shows its colour at least.
    expected.rgbSettings[RGBZone::logo] = {RGBEffect::staticColor, {10, 20, 30}, std::nullopt, 0.2, 0.5};
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
    EXPECT_EQ(manager->deviceState(), expected);
    EXPECT_EQ(takeCommands().size(), 19U);

    // A light read asks for the stages alone, and leaves the lift-off level.
    mouse().addFault({.kind = Kind::rejected, .commandID = 0x86});
    QCoro::waitFor(manager->refreshFromDevice(false));
    EXPECT_THAT(takeCommands(), ElementsAre(Code{0x04, 0x86}));
    EXPECT_EQ(states.count(), 2); // assigned, though equal
    EXPECT_EQ(manager->liftOffLevel(), 0);

    // What is not answered stays as it was.
    change(mouse(), [](auto &state) {
        state.activeStage = 1;
        state.lights[RGBZone::logo] = {};
        state.buttons[{0, MouseButton::clutch, false}] = ButtonAction::back().toButtonFunction();
    });
    for (const auto &[commandID, skip] : {std::pair{0x86, 0}, {0x84, 1}, {0x8C, 9}, {0x8B, 0}}) {
        mouse().addFault({Kind::rejected, {}, static_cast<std::uint8_t>(commandID), skip});
    }
    QCoro::waitFor(manager->refreshFromDevice(true));
    EXPECT_EQ(manager->deviceState(), expected);
    EXPECT_EQ(manager->liftOffLevel(), std::nullopt);
}

TEST_F(DeviceManagerTest, DropsAReadWhenTheMouseChanges)
{
    for (int pause = 0; pause < 19; ++pause) {
        SCOPED_TRACE(pause);
        defaults->values.clear();
        plugIn({"basilisk-v3", "basilisk-v3-x-hyperspeed"});
        change(mouse(), [](auto &state) { state.dpiStages = {100, 200}; });
        const auto storedBefore = stored(0x0099);
        time->duringPause(pause, [&] {
            mouse().unplug();
            onMainThread([] {});
        });
        QCoro::waitFor(manager->refreshFromDevice(true));
        EXPECT_EQ(manager->connectedDevice()->productID, 0x00B9);
        EXPECT_EQ(manager->deviceState(), createDefaultState(*manager->connectedDevice()));
        EXPECT_EQ(stored(0x0099), storedBefore);
        // The other mouse's own read was put off, and follows.
        settle();
        EXPECT_EQ(manager->liftOffLevel(), 1);
        EXPECT_EQ(stored(0x00B9), manager->deviceState());
    }
}

TEST_F(DeviceManagerTest, KeepsReadingWhileOtherMiceAttachAndDetach)
{
    plugIn({"basilisk-v3", "basilisk-v3-pro-wired", "basilisk-v3-x-hyperspeed"});
    mice[1]->unplug();
    settle();
    change(mouse(), [](auto &state) { state.liftOff = 2; });
    time->duringPause(3, [this] {
        mice[2]->unplug();
        mice[1]->replug();
        onMainThread([] {});
    });
    QCoro::waitFor(manager->refreshFromDevice(true));
    EXPECT_EQ(manager->connectedDevice()->productID, 0x0099);
    EXPECT_EQ(manager->liftOffLevel(), 2);
}

TEST_F(DeviceManagerTest, KeepsSettingsAfterDetachAndReadsAgainAfterAttach)
{
    plugIn({"basilisk-v3"});
    mouse().addFault({.kind = Kind::rejected, .commandID = 0x8B});
    QCoro::waitFor(manager->refreshFromDevice(true));
    EXPECT_THAT(manager->unanswered().words(), ElementsAre("lift-off distance"));
    EXPECT_TRUE(manager->isAnswering());
    const auto before = manager->deviceState();
    mouse().unplug();
    settle();
    EXPECT_EQ(manager->connectedDevice(), std::nullopt);
    EXPECT_EQ(manager->deviceState(), before);
    EXPECT_TRUE(manager->isAnswering());

    change(mouse(), [](auto &state) { state.activeStage = 1; });
    QSignalSpy levels(manager.get(), &DeviceManager::liftOffLevelChanged);
    mouse().replug();
    time->hold();
    EXPECT_TRUE(QTest::qWaitFor([this] { return manager->isSyncing(); }, 20'000));
    EXPECT_THAT(manager->unanswered().words(), IsEmpty()) << "of the former mouse";
    EXPECT_FALSE(manager->isAnswering());
    time->release();
    settle();
    EXPECT_EQ(manager->deviceState().currentDPIStage, 0);
    EXPECT_EQ(levels.count(), 2); // unknown first, then as read
}

TEST_F(DeviceManagerTest, MayBeDestroyedDuringACommand)
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

/// What an observer does when it hears of the other mouse is about that mouse alone.
TEST_F(DeviceManagerTest, AWriterCalledFromASlotWritesToTheNewMouse)
{
    using Signal = void (DeviceManager::*)();
    for (const Signal signal : {&DeviceManager::connectedDeviceChanged, &DeviceManager::isConnectedChanged,
                                &DeviceManager::deviceStateChanged, &DeviceManager::liftOffLevelChanged}) {
        plugIn({"basilisk-v3", "basilisk-v3-x-hyperspeed"});
        ASSERT_TRUE(finish(manager->setDPI(26000, 4)));
        const auto connection = QObject::connect(manager.get(), signal, manager.get(), [this] {
            if (manager->connectedDevice()->productID == 0x00B9) {
                manager->setDPIStage(1);
            }
        });
        mice[0]->unplug();
        finishAll();
        QObject::disconnect(connection);
        EXPECT_THAT(mice[1]->state().dpiStages, ElementsAre(400, 800, 1600, 2400, 3200));
        EXPECT_EQ(mice[1]->state().activeStage, 2);
        EXPECT_EQ(stored(0x00B9), manager->deviceState());
    }
}

TEST_F(DeviceManagerTest, ASlotMayDeleteIt)
{
    for (int notification = 0; notification < 16; ++notification) {
        SCOPED_TRACE(notification);
        plugIn({"basilisk-v3", "basilisk-v3-pro-wired"});
        int heard = 0;
        const auto hear = [&, manager = manager.get()] {
            if (heard++ == notification) {
                this->manager.reset();
            }
        };
        for (const auto signal : {&DeviceManager::connectedDeviceChanged, &DeviceManager::isConnectedChanged,
                                  &DeviceManager::deviceStateChanged, &DeviceManager::liftOffLevelChanged,
                                  &DeviceManager::isSyncingChanged}) {
            QObject::connect(manager.get(), signal, hear);
        }
        auto write = manager->setLiftOff(2);
        QCoro::waitFor(std::move(write));
        auto read = manager ? manager->refreshFromDevice(false) : QCoro::Task<void>{};
        mice[0]->unplug();
        finishAll();
        EXPECT_EQ(manager == nullptr, heard > notification);
    }
}

TEST(DeviceManagerDeathTest, TheSharedManagerIsDestroyedBeforeItsCollaborators)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto endApplication = [] {
        std::string order;
        Platform platform;
        platform.userDefaults = std::make_shared<MemoryDefaults>();
        Platform::setCurrent(platform);
        QObject::connect(&DeviceManager::shared(), &QObject::destroyed, [&] { order += 'd'; });
        QObject::connect(&ToastManager::shared(), &QObject::destroyed, [&] { order += 't'; });
        QObject::connect(&HIDMonitor::shared(), &QObject::destroyed, [&] { order += 'm'; });
        QCoreApplication::instance()->~QCoreApplication();
        std::_Exit(order == "dtm" || order == "dmt" ? 0 : 1);
    };
    EXPECT_EXIT(endApplication(), testing::ExitedWithCode(0), "");
}

TEST(ToastManager, ATimerHidesItsToastAndNeverItsSuccessor)
{
    ToastManager manager;
    QSignalSpy changes(&manager, &ToastManager::currentToastChanged);
    manager.show(ToastType::error, "first", 0.0);
    // When its time is up, and its going is queued, the second one comes.
    QTimer next;
    next.setSingleShot(true);
    next.callOnTimeout([&] { manager.error("second"); });
    next.start(0);
    for (int turn = 0; turn < 5; ++turn) {
        QCoreApplication::processEvents();
    }
    ASSERT_TRUE(manager.isShowing());
    EXPECT_EQ(manager.currentToast()->message, "second");
    EXPECT_EQ(manager.currentToast()->duration, 4.0);
    manager.show(ToastType::info, "third", 0.0);
    EXPECT_TRUE(changes.wait());
    EXPECT_EQ(manager.currentToast(), std::nullopt);
}

} // namespace kelmoth
