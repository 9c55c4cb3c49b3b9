#include "Platform/Simulated/SimulatedPlatform.h"
#include "Tests/Simulated/MouseOnTheBench.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace kelmoth {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Everything that a manager announces: "+path" or "-path".
struct Announcements {
    explicit Announcements(HIDManager &manager)
    {
        manager.registerDeviceMatchingCallback([this](const auto &device) { note("+", *device); });
        manager.registerDeviceRemovalCallback([this](const auto &device) { note("-", *device); });
    }

    void note(const std::string &sign, const HIDDevice &device)
    {
        EXPECT_EQ(std::this_thread::get_id(), mainThread);
        lines.push_back(sign + device.path());
    }

    std::vector<std::string> take()
    {
        QCoreApplication::processEvents();
        return std::exchange(lines, {});
    }

    std::thread::id mainThread = std::this_thread::get_id();
    std::vector<std::string> lines;
};

std::vector<std::string> paths(const std::vector<std::shared_ptr<HIDDevice>> &devices)
{
    std::vector<std::string> paths;
    for (const auto &device : devices) {
        paths.push_back(device->path());
    }
    return paths;
}

TEST(SimulatedPlatform, showsInterfacesAsRealMiceDo)
{
    MouseOnTheBench cable{"basilisk-v3"};
    MouseOnTheBench bluetooth{"basilisk-v3-pro:bluetooth"};
    const auto machine = simulatedMachine({cable.mouse, bluetooth.mouse});
    const auto manager = machine.hid->createManager();
    const auto devices = manager->copyDevices();
    ASSERT_THAT(paths(devices), ElementsAre("simulated:0/0", "simulated:0/1", "simulated:0/2",
                                            "simulated:0/3", "simulated:1/0"));
    for (std::size_t i = 0; i < devices.size(); ++i) {
        const bool isProtocol = devices[i]->integerProperty("MaxFeatureReportSize").value_or(0) >= 90;
        EXPECT_EQ(isProtocol, i == 3);
        EXPECT_EQ(devices[i]->stringProperty("Transport"), i < 4 ? "USB" : "Bluetooth");
        EXPECT_EQ(devices[i]->integerProperty("ProductID"), i < 4 ? 0x0099 : 0x00AC);
        EXPECT_TRUE(devices[i]->isEqual(*manager->copyDevices()[i]));
        EXPECT_FALSE(devices[i]->isEqual(*devices[(i + 1) % devices.size()]));
    }
    EXPECT_EQ(devices[0]->stringProperty("Product"), "Razer Basilisk V3");
    EXPECT_EQ(devices[0]->stringProperty("Colour"), std::nullopt);
    EXPECT_EQ(devices[0]->integerProperty("Colour"), std::nullopt);

    manager->setDeviceMatching(std::array<std::uint16_t, 1>{otherVendorID});
    EXPECT_THAT(manager->copyDevices(), IsEmpty());
    EXPECT_EQ(machine.usb->matchingDevices(0x1532, 0x0099).devices.size(), 1u);
    EXPECT_THAT(machine.usb->matchingDevices(0x1532, 0x00AC).devices, IsEmpty());
    EXPECT_THAT(machine.usb->matchingDevices(0x068E, 0x0099).devices, IsEmpty());
}

TEST(SimulatedPlatform, announcesPlugsOnTheMainThread)
{
    MouseOnTheBench cable{"basilisk-v3"};
    MouseOnTheBench bluetooth{"basilisk-v3:bluetooth"};
    const auto machine = simulatedMachine({cable.mouse, bluetooth.mouse});
    auto manager = machine.hid->createManager();
    Announcements announcements(*manager);
    ASSERT_EQ(manager->open(), 0);

    std::thread([&] { bluetooth.mouse->unplug(); }).join();
    EXPECT_THAT(announcements.lines, IsEmpty());
    EXPECT_EQ(manager->copyDevices().size(), 4u);
    EXPECT_THAT(announcements.take(), ElementsAre("-simulated:1/0"));
    bluetooth.mouse->replug();
    EXPECT_THAT(announcements.take(), ElementsAre("+simulated:1/0"));
    bluetooth.mouse->unplug();
    bluetooth.mouse->replug();
    EXPECT_THAT(announcements.take(), ElementsAre("-simulated:1/0", "+simulated:1/0"));

    bluetooth.mouse->unplug();
    manager->close();
    EXPECT_THAT(announcements.take(), IsEmpty());
    bluetooth.mouse->replug();
    ASSERT_EQ(manager->open(), 0);
    manager.reset();
    EXPECT_THAT(announcements.take(), IsEmpty());
}

TEST(SimulatedPlatform, aCallbackMayEndEverything)
{
    MouseOnTheBench bench{"basilisk-v3"};
    auto machine = std::make_unique<SimulatedMachine>(simulatedMachine({bench.mouse}));
    std::array managers{machine->hid->createManager(), machine->hid->createManager()};
    int count = 0;
    for (auto &manager : managers) {
        manager->registerDeviceRemovalCallback([&](const auto &) {
            ++count;
            managers = {};
            machine.reset();
        });
        manager->open();
    }
    bench.mouse->unplug();
    QCoreApplication::processEvents();
    EXPECT_EQ(count, 1);
    bench.mouse->replug();
    QCoreApplication::processEvents();
}

TEST(SimulatedPlatform, readsAListOfModels)
{
    const auto machine = simulatedMachine("basilisk-v3,basilisk-v3-pro:bluetooth,unknown,basilisk-v3");
    ASSERT_TRUE(machine);
    std::vector<std::string> found;
    for (const auto &mouse : machine->mice) {
        found.push_back(mouse->model().productName + " " + mouse->model().transport);
    }
    EXPECT_THAT(found, ElementsAre("Razer Basilisk V3 USB", "Razer Basilisk V3 Pro Bluetooth",
                                   "Razer Unlisted Mouse USB", "Razer Basilisk V3 USB"));

    for (const std::string_view list :
         {"", ",", "basilisk-v3,", ",basilisk-v3", "basilisk-v3, unknown", "Basilisk-V3", "basilisk",
          "basilisk-v3:usb", "unknown:bluetooth", "basilisk-v3:bluetooth:bluetooth", "\x1b[2J"}) {
        std::string failure;
        EXPECT_FALSE(simulatedMachine(list, &failure)) << list;
        EXPECT_THAT(failure, HasSubstr("basilisk-v3-x-hyperspeed-2")) << list;
        EXPECT_EQ(failure.find('\x1b'), std::string::npos);
        EXPECT_FALSE(simulatedMachine(list));
    }
}

} // namespace

} // namespace kelmoth
