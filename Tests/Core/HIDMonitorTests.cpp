// Which mice are listed, what travels between the monitor and a mouse, and what becomes of every fault on the
// way.

#include "Core/HID/RazerProtocol.h"
#include "Tests/Core/SimulatedMouseFixture.h"

#include <QSignalSpy>

namespace kelmoth {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using Kind = SimulatedFault::Kind;
using HIDMonitorTest = SimulatedMouseTest;

TEST_F(HIDMonitorTest, ListsEachMouseOnceAndSendsOnlyToThoseThatTakeCommands)
{
    struct Row {
        SimulatedModel model;
        std::string path = {}; ///< of the interface that is listed; empty where none is
        bool takesCommands = false;
    };
    const std::vector<Row> rows{
        {{0x1532, 0x0099, "", "", "USB"}, "simulated:0/3", true},
        {{0x1532, 0x0099, "", "", "USB"}},                           // a second one of the same
        {{0x1532, 0x0099, "", "", "bluetooth LE"}, "simulated:2/0"}, // the same by radio
        {{0x1532, 0x0099, "", "", "BLUETOOTH"}},
        {{0x068E, 0x00AA, "", "", "USB"}, "simulated:4/0"}, // the other vendor's
        {{0x046D, 0x00AC, "", "", "USB"}},                  // a stranger's
        {{0x1532, 0x1234, "100% %s %n", "", "USB"}},
        {{0x1532, 0x1234, "Basilisk V3 Pro", "", "Bluetooth"}, "simulated:7/0"},
        {{0x1532, 0x00AB, "", "", "USB"}, "simulated:8/0", true},
        {{0x1532, 0x00AC, "", "", ""}}, // no feature report, and not Bluetooth
    };
    std::vector<std::shared_ptr<SimulatedMouse>> mice;
    for (const auto &row : rows) {
        mice.push_back(std::make_shared<SimulatedMouse>(row.model, time->clock()));
    }
    watch(mice);
    auto device = monitor->connectedDevices().begin();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!rows[i].path.empty()) {
            ASSERT_NE(device, monitor->connectedDevices().end());
            EXPECT_EQ(monitor->deviceHandle(device->id)->path(), rows[i].path);
            const auto answer = QCoro::waitFor(monitor->send(command::getLiftOff{}, *device++));
            EXPECT_EQ(answer.has_value(), rows[i].takesCommands) << i;
        }
        EXPECT_EQ(mice[i]->takeTransfers().empty(), !rows[i].takesCommands) << i;
    }
    EXPECT_EQ(device, monitor->connectedDevices().end());
}

TEST_F(HIDMonitorTest, AsksEachModelInItsOwnWayAndTime)
{
    for (const auto &model : basiliskModels()) {
        plugIn(model.commandLineName);
        mouse->addFault({.kind = Kind::noAnswer});
        const auto answer = send(command::getDPIStages{});
        ASSERT_TRUE(answer) << model.commandLineName;
        EXPECT_EQ(RazerProtocol::parseDPIStages(*answer)->dpis, device().capabilities().factoryDPIPresets);
        const auto wait = model.productID == BasiliskProductID::basiliskV3 ? 10ms : 60ms;
        EXPECT_THAT(time->takePauses(), ElementsAre(wait, 10ms, wait)) << model.commandLineName;
    }
}

/// Every fault that a mouse, a cable or a system can have, what comes of it, and after how many attempts:
/// up to five by USB, and up to five more by HID reports only when those gave no answer at all.
TEST_F(HIDMonitorTest, EveryFaultHasItsOutcome)
{
    constexpr int all = -1;
    struct Row {
        std::string name;
        SimulatedFault fault;
        bool isAnswered;
        int attempts;
    };
    const std::vector<Row> rows{
        {"one request unheard", {.kind = Kind::noAnswer}, true, 2},
        {"four requests unheard", {.kind = Kind::noAnswer, .times = 4}, true, 5},
        {"five requests unheard", {.kind = Kind::noAnswer, .times = 5}, true, 6},
        {"nine requests unheard", {.kind = Kind::noAnswer, .times = 9}, true, 10},
        {"never heard", {.kind = Kind::noAnswer, .times = all}, false, 10},
        {"not ready three times", {.kind = Kind::notReady, .times = 3}, true, 4},
        {"never ready", {.kind = Kind::notReady, .times = all}, false, 10},
        {"failed", {.kind = Kind::rejected, .status = 0x03}, false, 1},
        {"timed out inside", {.kind = Kind::rejected, .status = 0x04}, false, 1},
        {"not supported", {.kind = Kind::rejected, .status = 0x05}, false, 1},
        {"an unknown status", {.kind = Kind::rejected, .times = all, .status = 0x77}, false, 10},
        {"an answer to another command", {.kind = Kind::otherCommand}, true, 2},
        {"answers to other commands only", {.kind = Kind::otherCommand, .times = all}, false, 10},
        {"a stall", {.kind = Kind::failedTransfer, .error = EPIPE}, true, 2},
        {"a time-out", {.kind = Kind::failedTransfer, .times = 2, .error = ETIMEDOUT}, true, 3},
        {"a failed read", {.kind = Kind::failedTransfer, .skip = 1, .error = EIO}, true, 2},
        {"a broken cable", {.kind = Kind::failedTransfer, .times = all, .error = EIO}, false, 10},
        {"a short answer", {.kind = Kind::shortRead}, true, 2},
        {"short answers only", {.kind = Kind::shortRead, .times = all}, false, 10},
    };
    for (const auto &row : rows) {
        plugIn("basilisk-v3");
        mouse->addFault(row.fault);
        EXPECT_EQ(send(command::getDPIStages{}).has_value(), row.isAnswered) << row.name;
        EXPECT_EQ(takeAttempts(), row.attempts) << row.name;
        // The mouse is as reachable as before.
        mouse->clearFaults();
        EXPECT_TRUE(send(command::getDPIStages{})) << row.name;
    }
}

TEST_F(HIDMonitorTest, AMouseThatMayNotBeOpenedIsListedAndAskedByHIDReportsOnceItMay)
{
    mouse = std::make_shared<SimulatedMouse>(*SimulatedModel::named("basilisk-v3-pro"), time->clock());
    mouse->addFault({.kind = Kind::denied, .times = -1});
    watch();
    EXPECT_FALSE(send(command::getDPIStages{}));
    EXPECT_EQ(takeAttempts(), 0);
    mouse->clearFaults();
    time->takePauses();
    mouse->addFault({.kind = Kind::noAnswer});
    EXPECT_TRUE(send(command::getDPIStages{}));
    EXPECT_THAT(time->takePauses(), ElementsAre(60ms, 10ms, 60ms));
    takeAttempts();
    mouse->addFault({.kind = Kind::rejected});
    EXPECT_FALSE(send(command::getDPIStages{}));
    EXPECT_EQ(takeAttempts(), 1);
}

TEST_F(HIDMonitorTest, AMousePulledOutAtAnyTransferGivesNoAnswerAndLeavesTheList)
{
    for (int transfer = 0; transfer < 2; ++transfer) {
        plugIn("basilisk-v3-pro-wireless");
        QSignalSpy changes(monitor.get(), &HIDMonitor::connectedDevicesChanged);
        mouse->addFault({.kind = Kind::unplug, .skip = transfer});
        const auto before = device();
        EXPECT_TRUE(monitor->isBatteryMonitored(before.id));
        EXPECT_EQ(send(command::getDPIStages{}), std::nullopt);
        EXPECT_TRUE(!changes.empty() || changes.wait());
        EXPECT_TRUE(monitor->connectedDevices().empty());
        EXPECT_EQ(monitor->deviceHandle(before.id), nullptr);
        EXPECT_FALSE(monitor->isBatteryMonitored(before.id));

        mouse->clearFaults();
        mouse->replug();
        EXPECT_TRUE(changes.wait());
        EXPECT_NE(device().id, before.id);
        EXPECT_TRUE(send(command::getDPIStages{}));
        EXPECT_EQ(QCoro::waitFor(monitor->send(command::getDPIStages{}, before)), std::nullopt);
    }
}

TEST_F(HIDMonitorTest, ServesCallersInTheirOrderAndToTheEnd)
{
    plugIn("basilisk-v3");
    std::vector<QCoro::Task<std::optional<Data>>> answers;
    for (const auto zone : {RGBZone::underglow, RGBZone::logo, RGBZone::scrollWheel}) {
        answers.push_back(monitor->send(command::getRGB{zone}, device()));
    }
    monitor.reset(); // which leaves nothing undone
    for (auto &answer : answers) {
        EXPECT_TRUE(QCoro::waitFor(std::move(answer)));
    }
    std::vector<int> zones;
    for (const auto &transfer : mouse->takeTransfers()) {
        zones.push_back(transfer.bytes[9]);
    }
    EXPECT_THAT(zones, ElementsAre(0x0A, 0x0A, 0x04, 0x04, 0x01, 0x01)); // request and answer
}

TEST_F(HIDMonitorTest, ReadsTheBatteryWhereThereIsOneAndKeepsWhatItKnows)
{
    const SimulatedFault none{.times = 0};
    const SimulatedFault noLevel{.kind = Kind::noAnswer, .commandID = 0x80, .times = -1};
    const SimulatedFault noStatus{.kind = Kind::rejected, .commandID = 0x84};
    using Row = std::tuple<std::string, SimulatedFault, std::optional<Int>, bool, int>;
    for (const auto &[model, fault, level, isCharging, attempts] :
         {Row{"basilisk-v3", none, {}, false, 0}, Row{"basilisk-v3-pro-wireless", none, 50, true, 2},
          Row{"basilisk-v3-x-hyperspeed", none, 50, false, 1},
          Row{"basilisk-v3-pro-wired", noLevel, 78, true, 10},
          Row{"basilisk-v3-pro-wired", noStatus, 50, false, 2}}) {
        plugIn(model);
        EXPECT_EQ(device().batteryLevel, level ? std::optional<Int>(78) : std::nullopt) << model;
        EXPECT_EQ(monitor->isBatteryMonitored(device().id), level.has_value()) << model;
        auto held = mouse->state();
        held.battery = 128;
        held.isCharging = true;
        mouse->setState(held);
        mouse->addFault(fault);
        monitor->readBatteryLevel(device());
        EXPECT_EQ(settle(), attempts) << model;
        EXPECT_EQ(device().batteryLevel, level) << model;
        EXPECT_EQ(device().isCharging, isCharging) << model;
    }
}

} // namespace
} // namespace kelmoth
