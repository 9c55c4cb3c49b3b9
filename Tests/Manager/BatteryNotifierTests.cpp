#include "Core/HID/BatteryNotifier.h"
#include "Tests/Manager/DeviceManagerFixture.h"

namespace kelmoth {
namespace {

/// Remembers what is shown: "15 low", "5 critical", "-" for one that is taken away.
struct FakeNotifications : NotificationService {
    void show(const Notification &notification) override
    {
        const auto name = notification.body.find(" · ");
        names.insert(notification.body.substr(0, name));
        seen += notification.body.substr(name + std::string_view(" · ").size());
        seen += notification.isCritical ? " critical; " : " low; ";
        titles.insert(notification.title);
    }
    void withdraw() override { seen += "-; "; }

    std::string seen;
    std::set<std::string> names, titles;
};

using BatteryNotifierTest = DeviceManagerTest;

TEST_F(BatteryNotifierTest, TellsOfEachThresholdOnceOnEachWayDown)
{
    struct Row {
        std::string model;
        std::vector<std::pair<int, bool>> readings; ///< percent, -1 for no answer; charging
        std::string seen;
    };
    for (const auto &row :
         std::vector<Row>{{"basilisk-v3-pro-wireless",
                           {{16, false},
                            {15, false},
                            {17, false},
                            {-1, false},
                            {9, false},
                            {5, false},
                            {6, false},
                            {0, false}},
                           "15 % low; 5 % critical; "},
                          {"basilisk-v3-pro-wireless",
                           {{4, false}, {15, false}, {5, false}, {20, false}, {15, false}},
                           "4 % critical; -; 5 % critical; -; 15 % low; "},
                          // Charging is known only after the level: nothing flashes up in between.
                          {"basilisk-v3-pro-wireless",
                           {{14, true}, {14, false}, {14, true}, {13, true}, {13, false}},
                           "14 % low; -; 13 % low; "},
                          {"basilisk-v3-x-hyperspeed",
                           {{15, true}, {30, true}, {12, false}},
                           "15 % low; -; 12 % low; "}}) {
        SCOPED_TRACE(row.seen);
        plugIn({row.model, "basilisk-v3-pro-wired"});
        const Preferences preferences(defaults);
        const auto notifications = std::make_shared<FakeNotifications>();
        const BatteryNotifier notifier(*monitor, *manager, preferences, notifications);
        const auto read = [this](int percent, bool isCharging) {
            auto &current = manager->connectedDevice()->productID == 0x00AA ? *mice[1] : mouse();
            change(current, [&](auto &state) {
                state.battery = static_cast<std::uint8_t>((percent * 255 + 99) / 100);
                state.isCharging = isCharging;
            });
            if (percent < 0) {
                current.addFault({.kind = Kind::rejected});
            }
            monitor->readBatteryLevel(*manager->connectedDevice());
            finishAll();
        };
        for (const auto &[percent, isCharging] : row.readings) {
            read(percent, isCharging);
        }
        EXPECT_EQ(notifications->seen, row.seen);
        notifications->seen.clear();
        // Of a mouse that is not the configured one nothing is told.
        change(*mice[1], [](auto &state) { state.battery = 0; });
        monitor->readBatteryLevel(monitor->connectedDevices()[1]);
        finishAll();
        EXPECT_EQ(notifications->seen, "");
        mouse().unplug();
        finishAll();
        read(3, false);
        EXPECT_EQ(notifications->seen, "-; 3 % critical; ");
        EXPECT_TRUE(notifications->names.contains("Razer Basilisk V3 Pro (Wired)"));
        EXPECT_TRUE(notifications->titles.contains("Battery almost empty"));
    }
}

TEST_F(BatteryNotifierTest, IsSilentWhereTheUserWantsItSo)
{
    for (const auto &[stored, isTold] : {std::pair{"0", false}, {"1", true}, {"2", true}}) {
        plugIn({"basilisk-v3-x-hyperspeed"});
        defaults->values["batteryNotifications"] = std::int64_t{std::stoi(stored)};
        const Preferences preferences(defaults);
        const auto notifications = std::make_shared<FakeNotifications>();
        const BatteryNotifier notifier(*monitor, *manager, preferences, notifications);
        change(mouse(), [](auto &state) { state.battery = 1; });
        monitor->readBatteryLevel(*manager->connectedDevice());
        finishAll();
        EXPECT_EQ(!notifications->seen.empty(), isTold) << stored;
    }
}

} // namespace
} // namespace kelmoth
