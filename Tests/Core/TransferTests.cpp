// What travels between the monitor and a mouse, and what becomes of every fault on the way.

#include "Core/HID/HIDTransport.h"
#include "Core/HID/RazerProtocol.h"
#include "Tests/Core/FakeHID.h"
#include "Tests/Core/SimulatedMouseFixture.h"

#include <QSignalSpy>

namespace kelmoth {
namespace {

using testing::ElementsAre;
using Kind = SimulatedFault::Kind;

class TransferTest : public SimulatedMouseTest {};

TEST_F(TransferTest, GivesTheAnswerAtTheFirstAttempt)
{
    for (const auto &model : basiliskModels()) {
        plugIn(model.commandLineName);
        const auto answer = send(command::getDPIStages{});
        ASSERT_TRUE(answer) << model.commandLineName;
        EXPECT_EQ(RazerProtocol::parseDPIStages(*answer)->dpis, device().capabilities().factoryDPIPresets);
        const auto transfers = mouse->takeTransfers();
        ASSERT_EQ(transfers.size(), 2U) << model.commandLineName;
        EXPECT_EQ(transfers[0].wIndex, model.reportIndex);
        EXPECT_EQ(transfers[0].bytes[1], model.dpiTransactionID);
        EXPECT_THAT(time->takePauses(), ElementsAre(std::chrono::microseconds(model.waitTimeUs)));
    }
}

/// Every fault that a mouse, a cable or a system can have, what comes of it, and after how many attempts:
/// up to five by USB, and up to five more by HID reports only when those gave no answer at all.
TEST_F(TransferTest, EveryFaultHasItsOutcome)
{
    struct Row {
        std::string name;
        SimulatedFault fault;
        bool isAnswered;
        int attempts;
    };
    constexpr int all = -1;
    const std::vector<Row> rows{
        {"nothing wrong", {.kind = Kind::noAnswer, .times = 0}, true, 1},
        {"one request unheard", {.kind = Kind::noAnswer}, true, 2},
        {"four requests unheard", {.kind = Kind::noAnswer, .times = 4}, true, 5},
        {"five requests unheard", {.kind = Kind::noAnswer, .times = 5}, true, 6},
        {"never heard", {.kind = Kind::noAnswer, .times = all}, false, 10},
        {"not ready three times", {.kind = Kind::notReady, .times = 3}, true, 4},
        {"never ready", {.kind = Kind::notReady, .times = all}, false, 10},
        {"failed", {.kind = Kind::rejected, .status = 0x03}, false, 1},
        {"timed out inside", {.kind = Kind::rejected, .status = 0x04}, false, 1},
        {"not supported", {.kind = Kind::rejected, .status = 0x05}, false, 1},
        {"rejected after a vain attempt", {.kind = Kind::rejected, .skip = 1, .status = 0x03}, true, 1},
        {"an unknown status", {.kind = Kind::rejected, .times = all, .status = 0x77}, false, 10},
        {"an answer to another command", {.kind = Kind::otherCommand}, true, 2},
        {"answers to other commands only", {.kind = Kind::otherCommand, .times = all}, false, 10},
        {"a stall", {.kind = Kind::failedTransfer, .error = EPIPE}, true, 2},
        {"a time-out", {.kind = Kind::failedTransfer, .times = 2, .error = ETIMEDOUT}, true, 3},
        {"a protocol error", {.kind = Kind::failedTransfer, .error = EPROTO}, true, 2},
        {"a failed read", {.kind = Kind::failedTransfer, .skip = 1, .error = EIO}, true, 2},
        {"a broken cable", {.kind = Kind::failedTransfer, .times = all, .error = EIO}, false, 10},
        {"a short answer", {.kind = Kind::shortRead}, true, 2},
        {"short answers only", {.kind = Kind::shortRead, .times = all}, false, 10},
    };
    for (const auto &row : rows) {
        plugIn("basilisk-v3");
        mouse->addFault(row.fault);
        const auto answer = send(command::getDPIStages{});
        EXPECT_EQ(answer.has_value(), row.isAnswered) << row.name;
        EXPECT_EQ(takeAttempts(), row.attempts) << row.name;
        // The mouse is as reachable as before.
        mouse->clearFaults();
        EXPECT_TRUE(send(command::getDPIStages{})) << row.name;
    }
}

TEST_F(TransferTest, AMouseThatMayNotBeOpenedIsListedAndSentNothing)
{
    mouse = std::make_shared<SimulatedMouse>(*SimulatedModel::named("basilisk-v3"), time->clock());
    mouse->addFault({.kind = Kind::denied, .times = -1});
    watch();
    ASSERT_EQ(monitor->connectedDevices().size(), 1U);
    EXPECT_FALSE(send(command::getDPIStages{}));
    EXPECT_EQ(takeAttempts(), 0);
    mouse->clearFaults(); // the right to it has come
    EXPECT_TRUE(send(command::getDPIStages{}));
}

TEST_F(TransferTest, AMousePulledOutAtAnyTransferGivesNoAnswerAndLeavesTheList)
{
    for (int transfer = 0; transfer < 2; ++transfer) {
        plugIn("basilisk-v3");
        QSignalSpy changes(monitor.get(), &HIDMonitor::connectedDevicesChanged);
        mouse->addFault({.kind = Kind::unplug, .skip = transfer});
        const auto before = device();
        EXPECT_EQ(send(command::getDPIStages{}), std::nullopt);
        EXPECT_TRUE(!changes.empty() || changes.wait());
        EXPECT_TRUE(monitor->connectedDevices().empty());
        EXPECT_EQ(monitor->deviceHandle(before.id), nullptr);

        mouse->clearFaults();
        mouse->replug();
        EXPECT_TRUE(changes.wait());
        EXPECT_NE(device().id, before.id);
        EXPECT_TRUE(send(command::getDPIStages{}));
        EXPECT_EQ(QCoro::waitFor(monitor->send(command::getDPIStages{}, before)), std::nullopt);
    }
}

TEST_F(TransferTest, AMouseWithoutUSBAccessAnswersByHIDReports)
{
    mouse = std::make_shared<SimulatedMouse>(*SimulatedModel::named("basilisk-v3"), time->clock());
    Platform platform;
    platform.sleeper = time;
    platform.hid = simulatedMachine({mouse}).hid;
    platform.usb = std::make_shared<NoUSB>();
    monitor = std::make_unique<HIDMonitor>(platform);
    monitor->startMonitoring();
    EXPECT_TRUE(send(command::getDPIStages{}));
    EXPECT_EQ(takeAttempts(), 1);
    mouse->addFault({.kind = Kind::rejected});
    EXPECT_FALSE(send(command::getDPIStages{}));
    EXPECT_EQ(takeAttempts(), 1);
}

TEST_F(TransferTest, ServesCallersInTheirOrder)
{
    plugIn("basilisk-v3");
    std::vector<QCoro::Task<std::optional<Data>>> answers;
    for (const auto zone : {RGBZone::underglow, RGBZone::logo, RGBZone::scrollWheel}) {
        answers.push_back(monitor->send(command::getRGB{zone}, device()));
    }
    for (auto &answer : answers) {
        EXPECT_TRUE(QCoro::waitFor(std::move(answer)));
    }
    const auto transfers = mouse->takeTransfers();
    ASSERT_EQ(transfers.size(), 6U);
    EXPECT_EQ(transfers[0].bytes[9], 0x0A);
    EXPECT_EQ(transfers[2].bytes[9], 0x04);
    EXPECT_EQ(transfers[4].bytes[9], 0x01);
}

TEST_F(TransferTest, AMonitorThatGoesWhileItWaitsLeavesNothingBehind)
{
    plugIn("basilisk-v3");
    auto answer = monitor->send(command::getDPIStages{}, device());
    monitor.reset();
    EXPECT_TRUE(QCoro::waitFor(std::move(answer)));
}

class BatteryTest : public SimulatedMouseTest {
protected:
    void holdBattery(std::uint8_t raw, bool isCharging)
    {
        auto state = mouse->state();
        state.battery = raw;
        state.isCharging = isCharging;
        mouse->setState(state);
    }
};

TEST_F(BatteryTest, IsReadWhereThereIsOne)
{
    struct Row {
        std::string model;
        std::optional<Int> level;
        bool isCharging;
        int commands;
    };
    for (const auto &row :
         {Row{"basilisk-v3", std::nullopt, false, 0}, Row{"basilisk-v3-pro-wireless", 78, true, 2},
          Row{"basilisk-v3-x-hyperspeed", 78, false, 1}}) {
        plugIn(row.model);
        EXPECT_EQ(device().batteryLevel.has_value(), row.level.has_value()) << row.model;
        holdBattery(200, true);
        monitor->readBatteryLevel(device());
        (void)send(command::prepareLiftOff{});
        (void)send(command::prepareLiftOff{});
        EXPECT_EQ(device().batteryLevel, row.level) << row.model;
        EXPECT_EQ(device().isCharging, row.isCharging) << row.model;
        EXPECT_EQ(takeAttempts() - 2, row.commands) << row.model;
    }
}

TEST_F(BatteryTest, KeepsWhatItKnowsWhenTheMouseIsSilent)
{
    plugIn("basilisk-v3-pro-wireless");
    holdBattery(254, true);
    monitor->readBatteryLevel(device());
    settle();
    ASSERT_EQ(device().batteryLevel, 99);
    ASSERT_TRUE(device().isCharging);

    holdBattery(128, true);
    mouse->addFault({.kind = Kind::noAnswer, .commandID = 0x80, .times = -1});
    monitor->readBatteryLevel(device());
    settle();
    EXPECT_EQ(device().batteryLevel, 99);
    EXPECT_TRUE(device().isCharging);

    // A charging status that is not answered counts as none.
    mouse->clearFaults();
    mouse->addFault({.kind = Kind::rejected, .commandID = 0x84, .times = -1});
    monitor->readBatteryLevel(device());
    settle();
    EXPECT_EQ(device().batteryLevel, 50);
    EXPECT_FALSE(device().isCharging);
}

} // namespace
} // namespace kelmoth
