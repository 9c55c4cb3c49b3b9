#include "Core/HID/BatteryNotifier.h"
#include "Tests/Manager/DeviceManagerFixture.h"

namespace kelmoth {

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

TEST_F(BatteryNotifierTest, NotifiesOfEachThresholdOncePerDischarge)
{
    constexpr auto pro = "basilisk-v3-pro-wireless";
    constexpr int none = 1000; // no answer
    // The model, the percents that are read, below zero while it is charged, and what is shown.
    const std::tuple<std::string, std::vector<int>, std::string> rows[]{
        {pro, {16, 15, 17, none, 9, 5, 6, 0}, "15 % low; 5 % critical; "},
        {pro, {4, 15, 5, 20, 15}, "4 % critical; -; 5 % critical; -; 15 % low; "},
        // Charging is known only after the level: nothing flashes up in between.
        {pro, {-14, 14, -14, -13, 13}, "14 % low; -; 13 % low; "},
        {"basilisk-v3-x-hyperspeed", {-15, -30, 12}, "15 % low; -; 12 % low; "},
    };
    for (const auto &[model, readings, seen] : rows) {
        SCOPED_TRACE(seen);
        plugIn({model, "basilisk-v3-pro-wired"});
        const Preferences preferences(defaults);
        const auto notifications = std::make_shared<FakeNotifications>();
        const BatteryNotifier notifier(*monitor, *manager, preferences, notifications);
        for (const int reading : readings) {
            if (reading == none) {
                mouse().addFault({.kind = Kind::rejected});
            }
            charge(mouse(), std::abs(reading) % none, reading < 0);
        }
        EXPECT_EQ(notifications->seen, seen);
        notifications->seen.clear();
        // Of a mouse that is not the configured one nothing is told.
        change(*mice[1], [](auto &state) { state.battery = 0; });
        monitor->readBatteryLevel(monitor->connectedDevices()[1]);
        finishAll();
        EXPECT_EQ(notifications->seen, "");
        mouse().unplug();
        finishAll();
        charge(*mice[1], 3, false);
        EXPECT_EQ(notifications->seen, "-; 3 % critical; ");
        EXPECT_TRUE(notifications->names.contains("Razer Basilisk V3 Pro (Wired)"));
        EXPECT_TRUE(notifications->titles.contains("Battery almost empty"));
    }
}

TEST_F(BatteryNotifierTest, IsSilentWhenDisabled)
{
    for (const std::int64_t stored : {0, 1, 2}) {
        plugIn({"basilisk-v3-x-hyperspeed"});
        defaults->setInteger("batteryNotifications", stored);
        const Preferences preferences(defaults);
        const auto notifications = std::make_shared<FakeNotifications>();
        const BatteryNotifier notifier(*monitor, *manager, preferences, notifications);
        charge(mouse(), 0, false);
        EXPECT_EQ(notifications->seen.empty(), stored == 0) << stored;
    }
}

} // namespace kelmoth
