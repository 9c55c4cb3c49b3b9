// What the system says of its HID interfaces, and what it tells of those that come and go.

#include "Tests/Hardware/HardwareTest.h"

#include <array>

namespace kelmoth {
namespace {

using testing::SizeIs;

class LinuxHIDTest : public HardwareTest {};

TEST_F(LinuxHIDTest, DescribesAnInterfaceWithoutOpeningIt)
{
    struct Row {
        std::string what;
        MockMouseOptions options;
        std::string product;
        std::string serial = "SIM00AC";
        std::string transport = "USB";
        std::int64_t productID = 0x00AC;
        std::optional<std::int64_t> reportSize = 90;
        std::string model = "basilisk-v3-pro";
    };
    const std::vector<MockInterface> liar{{std::vector<std::uint8_t>(5000, 0xC0)}};
    const std::string name = "Razer Basilisk V3 Pro";
    const std::string fullName = "Maker " + name;
    const std::string unknown = "\xEF\xBF\xBD";
    const std::vector<Row> rows{
        {"a mouse", {}, name},
        {"Bluetooth", {}, fullName, "SIM00AC", "Bluetooth", 0xAC, 90, "basilisk-v3-pro:bluetooth"},
        {"another bus", {.hidID = "0018:00001532:000000ac"}, fullName, "SIM00AC", "Unknown"},
        {"more than 16 bits", {.hidID = "3:1532:FFFF00AC"}, name, "SIM00AC", "USB", 0xFFFF00AC},
        {"name known to udev", {.udevModel = "A\\x20\\x5cB\\x2"}, "A \\B\\x2"},
        {"nameless, says udev", {.product = "", .udevModel = "00ac"}, "Maker "},
        {"nameless", {.product = ""}, "Maker "},
        {"serial in USB only", {.hidSerial = ""}, name},
        {"not UTF-8", {.hidSerial = "\xFE", .product = "\xFFG\xC3"}, unknown + "G" + unknown, unknown},
        {"control characters", {.product = "%s\x1B[2J\x07"}, "%s\x1B[2J\x07"},
        {"lying descriptor", {.interfaces = liar}, name, "SIM00AC", "USB", 0xAC, std::nullopt},
    };
    for (const auto &row : rows) {
        const auto mouse = attachMouse(row.model, row.options);
        mouse->permit(false);
        const WithoutRights user;
        const auto device = hidDevice(mouse->hidrawNode(0));
        ASSERT_TRUE(device) << row.what;
        EXPECT_EQ(device->integerProperty("VendorID"), 0x1532) << row.what;
        EXPECT_EQ(device->integerProperty("ProductID"), row.productID) << row.what;
        EXPECT_EQ(device->integerProperty("MaxFeatureReportSize"), row.reportSize) << row.what;
        EXPECT_EQ(device->stringProperty("Product"), row.product) << row.what;
        EXPECT_EQ(device->stringProperty("SerialNumber"), row.serial) << row.what;
        EXPECT_EQ(device->stringProperty("Transport"), row.transport) << row.what;
        EXPECT_EQ(device->integerProperty("Serial"), std::nullopt);
        EXPECT_EQ(device->stringProperty("ProductID"), std::nullopt);
    }
}

TEST_F(LinuxHIDTest, IgnoresWhatIsNoInterfaceOfTheMakers)
{
    for (const char *id :
         {"", "0003", "0003:00001532", "0003:00001532:", "0003:00001532:000000000099", "3:1532:9g",
          "3:1532:0099:1", "0003:0000046D:00000099", "0003:00011532:00000099"}) {
        const auto mouse = attachMouse("basilisk-v3", {.hidID = id});
        const auto manager = hid->createManager();
        manager->setDeviceMatching(std::array<std::uint16_t, 2>{0x1532, 0x068E});
        EXPECT_THAT(manager->copyDevices(), SizeIs(0)) << id;
    }
    // The answer when the system cannot say how long reports are, because the device has gone since.
    const auto mouse = attachMouse("basilisk-v3");
    const auto device = hidDevice(mouse->hidrawNode(3));
    mouse->detach();
    EXPECT_EQ(device->integerProperty("MaxFeatureReportSize"), std::nullopt);
    EXPECT_EQ(device->stringProperty("Product"), "Razer Basilisk V3");
}

/// A manager that remembers what it was told.
class HotplugTest : public HardwareTest {
protected:
    void watch()
    {
        manager->setDeviceMatching(std::array<std::uint16_t, 1>{0x1532});
        manager->registerDeviceMatchingCallback([this](const auto &device) { attached.push_back(device); });
        manager->registerDeviceRemovalCallback([this](const auto &device) { removed.push_back(device); });
        ASSERT_EQ(manager->open(), 0);
        ASSERT_EQ(manager->open(), 0);
    }

    std::unique_ptr<HIDManager> manager = hid->createManager();
    std::vector<std::shared_ptr<HIDDevice>> attached;
    std::vector<std::shared_ptr<HIDDevice>> removed;
};

TEST_F(HotplugTest, FollowsAMouseThatComesAndGoesAndComesBack)
{
    watch();
    const auto mouse = makeMouse("basilisk-v3-pro-wired");
    for (std::size_t round = 1; round <= 3; ++round) {
        mouse->attach();
        ASSERT_TRUE(waitUntil([&] { return attached.size() == 4 * round; }));
        EXPECT_EQ(attached.back()->probeAccess(), 0);
        mouse->detach();
        ASSERT_TRUE(waitUntil([&] { return removed.size() == 4 * round; }));
        EXPECT_EQ(attached.back()->probeAccess(), ENODEV);
    }
    for (std::size_t i = 0; i < attached.size(); ++i) {
        EXPECT_TRUE(attached[i]->isEqual(*removed[i]));
        EXPECT_FALSE(attached[i]->isEqual(*attached[(i + 4) % attached.size()])) << "another attach";
    }
    manager->close();
    mouse->attach();
    const auto other = hid->createManager();
    int others = 0;
    other->registerDeviceMatchingCallback([&](const auto &) { ++others; });
    ASSERT_EQ(other->open(), 0);
    ASSERT_TRUE(waitUntil([&] { return others == 4; }));
    EXPECT_THAT(attached, SizeIs(12)) << "closed";
}

TEST_F(HotplugTest, MissesNothingBetweenTheListAndTheWatch)
{
    const auto early = attachMouse("basilisk-v3-pro-wired");
    const auto listed = manager->copyDevices();
    ASSERT_THAT(listed, SizeIs(4));
    early->vanish();
    const auto late = makeMouse("basilisk-v3", {}, 2);
    late->attach();
    watch();
    EXPECT_THAT(attached, SizeIs(0)) << "only from the event loop";
    ASSERT_TRUE(waitUntil([&] { return attached.size() == 4 && removed.size() == 4; }));
    EXPECT_TRUE(listed[0]->isEqual(*removed[0]));
    EXPECT_EQ(listed[0]->beginExchange(), ENODEV);
}

TEST_F(HotplugTest, ACallbackMayEndTheManager)
{
    const auto mouse = attachMouse("basilisk-v3");
    for (const bool isEvent : {false, true}) {
        manager = hid->createManager();
        int calls = 0;
        ASSERT_EQ(manager->open(), 0);
        if (isEvent) {
            QCoreApplication::processEvents(); // what is there is known now
            mouse->detach();
        }
        const auto end = [&](const auto &) {
            ++calls;
            manager.reset();
        };
        manager->registerDeviceMatchingCallback(end);
        manager->registerDeviceRemovalCallback(end);
        ASSERT_TRUE(waitUntil([&] { return !manager; }));
        QCoreApplication::processEvents();
        EXPECT_EQ(calls, 1);
    }
}

} // namespace
} // namespace kelmoth
