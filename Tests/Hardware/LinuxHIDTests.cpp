// What the system says of its mice, and what it tells of those that come and go.

#include "Platform/Linux/Doctor.h"
#include "Platform/Linux/ReportDescriptor.h"
#include "Tests/Hardware/HardwareTest.h"

#include <array>
#include <filesystem>
#include <fstream>

namespace kelmoth {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

using Bytes = std::vector<std::uint8_t>;

Bytes joined(const std::vector<Bytes> &parts)
{
    Bytes all;
    for (const auto &part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

TEST(ReportDescriptorTest, GivesTheLongestFeatureReportOfAnHonestDescriptorOnly)
{
    const Bytes size8{0x75, 8};
    const Bytes ninety{0x95, 90};
    const Bytes feature{0xB1, 0x02};
    const Bytes id7{0x85, 7};
    const Bytes most = joined({size8, {0x96, 0x00, 0x30}, feature});
    const Bytes plain = joined({size8, ninety, feature});
    const struct {
        std::string what;
        std::optional<std::int64_t> size;
        std::vector<Bytes> descriptor;
    } rows[]{
        {"empty", {}, {}},
        {"no feature report", {}, {size8, ninety, {0x81, 0x02, 0x91, 0x02}}},
        {"within collections", 90, {{0xA1, 0x01, 0xA1, 0x00}, plain, {0xC0, 0xC0}}},
        {"with an ID", 91, {id7, plain}},
        {"IDs in other reports only", 91, {plain, id7, {0x81, 0x02}}},
        {"fields add up, bits round up", 4, {{0x75, 1, 0x95, 9}, feature, feature, feature}},
        {"each ID by itself", 91, {id7, plain, {0x85, 8, 0x95, 20}, feature}},
        {"values of four and two bytes", 300, {{0x77, 8, 0, 0, 0, 0x96, 0x2C, 0x01}, feature}},
        {"push and pop", 90, {size8, ninety, {0xA4, 0x95, 1, 0xB4}, feature}},
        {"a long item", 90, {{0xFE, 3, 0x10, 1, 2, 3}, plain}},
        {"the longest descriptor", 90, {plain, Bytes(4096 - 6, 0x04)}},
        {"a longer one", {}, {plain, Bytes(4096 - 5, 0x04)}},
        {"cut off in a value", {}, {plain, {0x96, 1}}},
        {"cut off in a long item", {}, {plain, {0xFE, 3, 0x10, 1, 2}}},
        {"pop without push", {}, {{0xB4}, plain}},
        {"pushed too often", {}, {Bytes(5, 0xA4), plain}},
        {"collection never ended", {}, {{0xA1, 0x01}, plain}},
        {"collection never begun", {}, {plain, {0xC0}}},
        {"ID 0", {}, {{0x85, 0}, plain}},
        {"an ID beyond a byte", {}, {{0x86, 0, 1}, plain}},
        {"a field beyond 256 bits", {}, {{0x76, 1, 1}, ninety, feature}},
        {"the longest report", 16383, {most, {0x96, 0xFF, 0x0F}, feature}},
        {"a longer one", {}, {most, {0x96, 0x00, 0x10}, feature}},
        {"sums beyond 32 bits", {}, {{0x76, 0, 1, 0x96, 0x00, 0x30}, Bytes(1400, 0xB0)}},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(maxFeatureReportSize(joined(row.descriptor)), row.size) << row.what;
    }
}

class LinuxHIDTest : public HardwareTest {};

TEST_F(LinuxHIDTest, DescribesAnInterfaceWithoutOpeningIt)
{
    const std::string unknown = "\xEF\xBF\xBD";
    const struct {
        MockMouseOptions options;
        std::string product = "Razer Basilisk V3 Pro";
        std::string serial = "SIM00AC";
        std::string transport = "USB";
        std::string model = "basilisk-v3-pro";
    } rows[]{
        {{}},
        {{}, "Maker Razer Basilisk V3 Pro", "SIM00AC", "Bluetooth", "basilisk-v3-pro:bluetooth"},
        {{.hidID = "0018:00001532:000000ac"}, "Maker Razer Basilisk V3 Pro", "SIM00AC", "Unknown"},
        {{.udevModel = "A\\x20\\x5cB\\x2"}, "A \\B\\x2"},
        {{.product = "", .udevModel = "00ac"}, "Maker "}, // it has none, says udev
        {{.hidSerial = ""}},                              // but in USB
        {{.hidSerial = "\xFE", .product = "\xFFG\xC3"}, unknown + "G" + unknown, unknown},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(&row - rows);
        const auto mouse = attachMouse(row.model, row.options);
        mouse->permit(false);
        const WithoutRights user;
        const auto device = hidDevice(mouse->hidrawNode(0));
        ASSERT_TRUE(device);
        EXPECT_EQ(device->integerProperty("VendorID"), 0x1532);
        EXPECT_EQ(device->integerProperty("ProductID"), 0x00AC);
        EXPECT_EQ(device->integerProperty("MaxFeatureReportSize"), 90);
        EXPECT_EQ(device->stringProperty("Product"), row.product);
        EXPECT_EQ(device->stringProperty("SerialNumber"), row.serial);
        EXPECT_EQ(device->stringProperty("Transport"), row.transport);
    }
}

TEST_F(LinuxHIDTest, TheDoctorNamesWhatStandsInTheWayOfAUserWithoutRights)
{
    using enum DoctorProblem::Kind;
    const auto directory = testbed->path("/rules.d");
    Examination seen;
    const auto problems = [&] {
        const WithoutRights user;
        seen = examine({directory + "/none", directory});
        std::vector<DoctorProblem::Kind> kinds;
        for (const auto &problem : seen.problems) {
            EXPECT_FALSE(problem.what.empty() || problem.remedy.empty());
            kinds.push_back(problem.kind);
        }
        return kinds;
    };
    std::unique_ptr<MockMouse> mouse;
    const auto attach = [&](const char *model, MockMouseOptions options = {}) {
        mouse.reset();
        mouse = attachMouse(model, std::move(options));
    };
    EXPECT_THAT(problems(), ElementsAre(noDevice));
    attach("basilisk-v3:bluetooth");
    EXPECT_THAT(problems(), ElementsAre(bluetooth));
    attach("basilisk-v3-pro", {.interfaces = std::vector<ReportDescriptor>()});
    EXPECT_THAT(problems(), ElementsAre(noHIDNode));
    attach("basilisk-v3-pro", {.interfaces = std::vector(1, takesCommands), .hasDriver = false});
    EXPECT_THAT(problems(), ElementsAre()) << "libusb can hold it";
    mouse->permit(false);
    EXPECT_THAT(problems(), ElementsAre(noHIDNode, rulesMissing));

    attach("basilisk-v3");
    EXPECT_THAT(problems(), ElementsAre());
    EXPECT_EQ(seen.usbDevices.at(0).node, mouse->usbNode());
    EXPECT_EQ(seen.usbDevices.at(0).name, "Razer Basilisk V3");
    EXPECT_EQ(seen.usbDevices.at(0).interfaces.at(3).driver, "usbhid");
    EXPECT_EQ(seen.usbDevices.at(0).interfaces.at(3).node, mouse->hidrawNode(3));
    EXPECT_EQ(seen.hidNodes.at(3).interface, 3);
    EXPECT_EQ(seen.hidNodes.at(3).maxFeatureReportSize, 90);

    attach("basilisk-v3-pro", {.interfaces = std::vector(1, takesCommands)});
    mouse->permit(false);
    EXPECT_THAT(problems(), ElementsAre(noAccess, rulesMissing));
    std::filesystem::create_directory(directory);
    std::ofstream(directory + "/70-kelmoth.rules").put('\n');
    EXPECT_THAT(problems(), ElementsAre(noAccess));
    EXPECT_EQ(seen.rulesFile, directory + "/70-kelmoth.rules");
    testbed->removeNode(mouse->hidrawNode(0));
    EXPECT_THAT(problems(), ElementsAre(nodeFailed));
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
    }

    std::unique_ptr<HIDManager> manager = hid->createManager();
    std::vector<std::shared_ptr<HIDDevice>> attached;
    std::vector<std::shared_ptr<HIDDevice>> removed;
};

TEST_F(HotplugTest, FollowsAMouseThatComesAndGoesAndComesBack)
{
    watch();
    ASSERT_EQ(manager->open(), 0) << "once more";
    const auto mouse = makeMouse("basilisk-v3-pro-wired");
    for (std::size_t round = 1; round <= 2; ++round) {
        mouse->attach();
        ASSERT_TRUE(waitUntil([&] { return attached.size() == 4 * round; }));
        EXPECT_EQ(attached.back()->probeAccess(), 0);
        mouse->detach();
        ASSERT_TRUE(waitUntil([&] { return removed.size() == 4 * round; }));
        EXPECT_EQ(attached.back()->probeAccess(), ENODEV);
    }
    for (std::size_t i = 0; i < attached.size(); ++i) {
        EXPECT_TRUE(
            std::ranges::any_of(removed, [&](const auto &device) { return device->isEqual(*attached[i]); }));
        EXPECT_FALSE(attached[i]->isEqual(*attached[(i + 4) % 8])) << "another attach";
    }
    manager->close();
    mouse->attach();
    const auto other = hid->createManager();
    int others = 0;
    other->registerDeviceMatchingCallback([&](const auto &) { ++others; });
    ASSERT_EQ(other->open(), 0);
    ASSERT_TRUE(waitUntil([&] { return others == 4; }));
    EXPECT_THAT(attached, SizeIs(8)) << "closed";
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
    EXPECT_EQ(listed[0]->beginExchange(), ENODEV);
    EXPECT_EQ(listed[0]->stringProperty("Product"), "Razer Basilisk V3 Pro (Wired)") << "as before";
    EXPECT_EQ(listed[0]->integerProperty("MaxFeatureReportSize"), std::nullopt) << "too late to ask";
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
