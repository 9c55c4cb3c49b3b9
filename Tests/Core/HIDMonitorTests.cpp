// Which mice are listed, and what travels between the monitor and a mouse.

#include "Core/HID/HIDMonitor.h"
#include "Core/HID/RazerProtocol.h"
#include "Tests/Manager/SimulatedMachineTest.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QSignalSpy>
#include <QTimer>

namespace kelmoth {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// A monitor on simulated mice.
class HIDMonitorTest : public SimulatedMachineTest {
protected:
    /// Plugs a mouse in, the only one, and starts to watch; the battery's first reading has then ended.
    void plugIn(std::string_view model)
    {
        mice.clear();
        SimulatedMachineTest::plugIn(std::string(model));
        watch();
        settle();
    }

    void watch()
    {
        const auto machine = platform();
        monitor = std::make_unique<HIDMonitor>(machine.hid, machine.usb, machine.sleeper);
        monitor->startMonitoring();
    }

    /// Lets everything that was asked of the mouse so far, and what follows from it, come to its end. How
    /// many requests that was.
    std::ptrdiff_t settle()
    {
        constexpr int rounds = 3;
        for (int round = 0; round < rounds; ++round) {
            (void)send(command::prepareLiftOff{}); // waits its turn behind all that is queued now
            QCoreApplication::processEvents();     // an answer that is there at once is not waited for
        }
        time->takePauses();
        return takeAttempts() - rounds;
    }

    RazerDevice device() const { return monitor->connectedDevices().front(); }

    std::optional<Data> send(RazerCommand command)
    {
        return QCoro::waitFor(monitor->send(std::move(command), device()));
    }

    /// How many requests the mouse was sent, or was to be sent, since the last look.
    std::ptrdiff_t takeAttempts()
    {
        return std::ranges::count(mouse().takeTransfers(), true, &SimulatedMouse::Transfer::isSet);
    }

    std::unique_ptr<HIDMonitor> monitor;
};

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
    for (const auto &row : rows) {
        mice.push_back(std::make_shared<SimulatedMouse>(row.model, time->clock()));
    }
    watch();
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

TEST_F(HIDMonitorTest, WaitsTheModelsPauseForAnAnswer)
{
    for (const auto &model : basiliskModels()) {
        plugIn(model.commandLineName);
        mouse().addFault({.kind = Kind::noAnswer});
        EXPECT_TRUE(send(command::getDPIStages{}));
        const auto wait = model.productID == BasiliskProductID::basiliskV3 ? 10ms : 60ms;
        EXPECT_THAT(time->takePauses(), ElementsAre(wait, 10ms, wait)) << model.commandLineName;
    }
}

TEST_F(HIDMonitorTest, AMouseWithoutPermissionIsListedAndUsesHIDReportsLater)
{
    SimulatedMachineTest::plugIn("basilisk-v3-pro").addFault({.kind = Kind::denied, .times = -1});
    watch();
    EXPECT_FALSE(send(command::getDPIStages{}));
    EXPECT_EQ(takeAttempts(), 0);
    mouse().clearFaults();
    time->takePauses();
    mouse().addFault({.kind = Kind::shortRead});
    EXPECT_TRUE(send(command::getDPIStages{}));
    EXPECT_THAT(time->takePauses(), ElementsAre(60ms, 10ms, 60ms));
    takeAttempts();
    mouse().addFault({.kind = Kind::rejected});
    EXPECT_FALSE(send(command::getDPIStages{}));
    EXPECT_EQ(takeAttempts(), 1);
}

TEST_F(HIDMonitorTest, AMouseUnpluggedInATransferLeavesTheList)
{
    for (int transfer = 0; transfer < 2; ++transfer) {
        plugIn("basilisk-v3-pro-wireless");
        QSignalSpy changes(monitor.get(), &HIDMonitor::connectedDevicesChanged);
        mouse().addFault({.kind = Kind::unplug, .skip = transfer});
        const auto before = device();
        EXPECT_TRUE(monitor->isBatteryMonitored(before.id));
        EXPECT_EQ(send(command::getDPIStages{}), std::nullopt);
        EXPECT_TRUE(!changes.empty() || changes.wait());
        EXPECT_TRUE(monitor->connectedDevices().empty());
        EXPECT_EQ(monitor->deviceHandle(before.id), nullptr);
        EXPECT_FALSE(monitor->isBatteryMonitored(before.id));

        mouse().clearFaults();
        mouse().replug();
        EXPECT_TRUE(changes.wait());
        EXPECT_NE(device().id, before.id);
        EXPECT_TRUE(send(command::getDPIStages{}));
        EXPECT_EQ(QCoro::waitFor(monitor->send(command::getDPIStages{}, before)), std::nullopt);
        EXPECT_EQ(mouse().holders, 1) << "the former attach is closed";
        log->takeLines();
        monitor->startMonitoring(); // which it does already
        EXPECT_TRUE(log->takeLines().empty());
        monitor->stopMonitoring();
        EXPECT_FALSE(monitor->isMonitoring());
        mouse().unplug();
        settle();
        EXPECT_FALSE(monitor->connectedDevices().empty()) << "nothing is watched any more";
    }
}

TEST_F(HIDMonitorTest, RunsCommandsInOrder)
{
    plugIn("basilisk-v3");
    std::vector<QCoro::Task<std::optional<Data>>> answers;
    for (const auto zone : {RGBZone::underglow, RGBZone::logo, RGBZone::scrollWheel}) {
        answers.push_back(monitor->send(command::getRGB{zone}, device()));
    }
    for (auto &answer : answers) {
        EXPECT_TRUE(QCoro::waitFor(std::move(answer)));
    }
    std::vector<int> zones;
    for (const auto &transfer : mouse().takeTransfers()) {
        zones.push_back(transfer.bytes[9]);
    }
    EXPECT_THAT(zones, ElementsAre(0x0A, 0x0A, 0x04, 0x04, 0x01, 0x01)); // request and answer
}

TEST_F(HIDMonitorTest, EndTransfersDropsQueuedCommandsAndStopsRunningOnes)
{
    // Each attempt is a request, a pause, a read and a pause; the sixth attempt is the first of the other
    // path.
    for (const int pause : {0, 1, 4, 9, 10, 11, 20}) {
        plugIn("basilisk-v3");
        mouse().addFault({.kind = Kind::notReady, .times = -1});
        std::vector<QCoro::Task<std::optional<Data>>> answers;
        time->duringPause(pause, [this] { monitor->endTransfers(); });
        for (const auto zone : {RGBZone::logo, RGBZone::scrollWheel}) {
            answers.push_back(monitor->send(command::getRGB{zone}, device()));
        }
        for (auto &answer : answers) {
            EXPECT_EQ(QCoro::waitFor(std::move(answer)), std::nullopt);
        }
        EXPECT_EQ(mouse().takeTransfers().size(), static_cast<std::size_t>(pause) + 1) << pause;
    }
    plugIn("basilisk-v3");
    monitor->endTransfers();
    EXPECT_EQ(send(command::getLiftOff{}), std::nullopt) << "for good";
}

TEST_F(HIDMonitorTest, ReadsTheBatteryAndKeepsTheLastLevel)
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
        const auto polls = monitor->findChildren<QTimer *>();
        ASSERT_EQ(polls.size(), level ? 1 : 0) << model;
        auto held = mouse().state();
        held.battery = 128;
        held.isCharging = true;
        mouse().setState(held);
        mouse().addFault(fault);
        if (level) {
            EXPECT_TRUE(polls[0]->isActive() && !polls[0]->isSingleShot());
            EXPECT_EQ(polls[0]->intervalAsDuration(), 5min);
            EXPECT_EQ(polls[0]->timerType(), Qt::VeryCoarseTimer); // wake-ups can be shared
            QMetaObject::invokeMethod(polls[0], "timeout");
        } else {
            monitor->readBatteryLevel(device());
        }
        EXPECT_EQ(settle(), attempts) << model;
        EXPECT_EQ(device().batteryLevel, level) << model;
        EXPECT_EQ(device().isCharging, isCharging) << model;
    }
}

} // namespace
} // namespace kelmoth
