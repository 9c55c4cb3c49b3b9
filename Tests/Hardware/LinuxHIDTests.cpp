// What the system says of its mice, and what it tells of those that come and go.

#include "Platform/Linux/Doctor.h"
#include "Platform/Linux/ReportDescriptor.h"
#include "Tests/Hardware/HardwareTest.h"

#include <QEventLoop>

#include <array>
#include <thread>
#include <unistd.h>

namespace kelmoth {

using testing::SizeIs;

using Bytes = std::vector<std::uint8_t>;
constexpr int waitTimeout = 20'000; // milliseconds

TEST(ReportDescriptorTest, FindsTheLongestFeatureReportOfValidDescriptors)
{
    const Bytes size8{0x75, 8};
    const Bytes ninety{0x95, 90};
    const Bytes feature{0xB1, 0x02};
    const Bytes id7{0x85, 7};
    const Bytes plain{0x75, 8, 0x95, 90, 0xB1, 0x02};
    const Bytes most{0x75, 8, 0x96, 0x00, 0x30, 0xB1, 0x02};
    const std::tuple<std::string, std::optional<std::int64_t>, std::vector<Bytes>> rows[]{
        {"no feature report", {}, {size8, ninety, {0x81, 0x02, 0x91, 0x02}}},
        {"within collections", 90, {{0xA1, 0x01, 0xA1, 0x00}, plain, {0xC0, 0xC0}}},
        {"with an ID", 91, {id7, plain}},
        {"IDs in other reports only", 91, {plain, id7, {0x81, 0x02}}},
        {"fields add up, bits round up", 4, {{0x75, 1, 0x95, 9}, feature, feature, feature}},
        {"each ID by itself", 91, {id7, plain, {0x85, 8, 0x95, 20}, feature}},
        {"values of four and two bytes", 300, {{0x77, 8, 0, 0, 0, 0x96, 0x2C, 0x01}, feature}},
        {"push and pop", 90, {size8, ninety, {0xA4, 0x95, 1, 0xA4, 0xB4, 0xB4}, feature}},
        {"a long item", 90, {{0xFE, 3, 0x10, 1, 2, 3}, plain}},
        {"the longest descriptor", 90, {plain, Bytes(4096 - 6, 0x04)}},
        {"a longer one", {}, {plain, Bytes(4096 - 5, 0x04)}},
        {"cut off in a value", {}, {plain, {0x96, 1}}},
        {"cut off in a long item", {}, {plain, {0xFE, 3, 0x10, 1, 2}}},
        {"pop without push", {}, {{0xB4}, plain}},
        {"pushed too often", {}, {Bytes(5, 0xA4), plain}},
        {"collection never ended", {}, {{0xA1, 0x01}, plain}},
        {"ID 0", {}, {{0x85, 0}, plain}},
        {"a field beyond 256 bits", {}, {{0x76, 1, 1}, ninety, feature}},
        {"the longest report", 16383, {most, {0x96, 0xFF, 0x0F}, feature}},
        {"a longer one", {}, {most, {0x96, 0x00, 0x10}, feature}},
        {"sums beyond 32 bits", {}, {{0x76, 0, 1, 0x96, 0x00, 0x30}, Bytes(1400, 0xB0)}},
    };
    for (const auto &[what, size, parts] : rows) {
        Bytes descriptor;
        for (const auto &part : parts) {
            descriptor.insert(descriptor.end(), part.begin(), part.end());
        }
        EXPECT_EQ(maxFeatureReportSize(descriptor), size) << what;
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
        mouse->hidraw(0).isDenied = true;
        const auto device = hidDevice(mouse->hidrawNode(0));
        ASSERT_TRUE(device);
        const auto properties = device->properties();
        EXPECT_EQ(properties.product, row.product);
        EXPECT_EQ(properties.serialNumber, row.serial);
        EXPECT_EQ(properties.transport, row.transport);
        EXPECT_THAT(time->takePauses(), SizeIs(0));
    }
}

TEST_F(LinuxHIDTest, TheDoctorReportsMissingPermissions)
{
    using enum DoctorProblem::Kind;
    const auto directory = testbed->path("/rules.d");
    std::optional<std::uint16_t> product;
    const auto expectProblems = [&](const std::vector<DoctorProblem::Kind> &expected) {
        const auto user = ::geteuid();
        EXPECT_EQ(::seteuid(user == 0 ? 65534 : user), 0);
        const auto seen = examine({{0x0099, 0x00AC}, product}, {directory + "/none", directory});
        EXPECT_EQ(::seteuid(user), 0);
        EXPECT_TRUE(std::ranges::equal(seen.problems, expected, {}, &DoctorProblem::kind))
            << testing::PrintToString(expected);
    };
    expectProblems({noDevice});
    constexpr auto pro = "basilisk-v3-pro";
    const std::tuple<const char *, MockMouseOptions, std::vector<DoctorProblem::Kind>> rows[]{
        {"basilisk-v3:bluetooth", {}, {bluetooth}},
        {pro, {.interfaces = std::vector<ReportDescriptor>()}, {noHIDNode}},
        {pro, {.hasDriver = false}, {noDriver}},
        {"unknown", {}, {unsupported}},
        {pro, {.hidID = "0003:0000068E:000000AC"}, {noHIDNode, otherVendor}},
        {pro, {.interfaces = std::vector(2, ReportDescriptor())}, {noCommandInterface}},
        {pro, {.interfaces = std::vector(1, takesCommands)}, {}},
    };
    std::unique_ptr<MockMouse> mouse;
    for (const auto &[model, options, problems] : rows) {
        mouse.reset();
        mouse = attachMouse(model, options);
        expectProblems(problems);
    }
    mouse->permit(false);
    expectProblems({noAccess, rulesMissing});
    std::filesystem::create_directory(directory);
    const auto rules = directory + "/70-kelmoth.rules";
    std::filesystem::create_symlink("/dev/null", rules);
    expectProblems({noAccess, rulesMasked});
    std::filesystem::remove(rules);
    std::ofstream(rules).flush();
    expectProblems({noAccess, rulesMasked});
    std::ofstream(rules).put('\n');
    expectProblems({noAccess});
    product = 0x0099;
    expectProblems({noDevice});
    product.reset();
    testbed->removeNode(mouse->hidrawNode(0));
    expectProblems({nodeFailed});
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

TEST_F(HotplugTest, FollowsAttachDetachAndReattach)
{
    const auto otherVendor = attachMouse("basilisk-v3", {.hidID = "0003:00001234:00000099"}, 2);
    const auto mouse = attachMouse("basilisk-v3-pro-wired");
    mouse->detach();
    watch();
    for (std::size_t round = 1; round <= 2; ++round) {
        mouse->attach();
        ASSERT_TRUE(QTest::qWaitFor([&] { return attached.size() == 4 * round; }, waitTimeout));
        EXPECT_EQ(attached.back()->probeAccess(), 0);
        mouse->detach();
        ASSERT_TRUE(QTest::qWaitFor([&] { return removed.size() == 4 * round; }, waitTimeout));
        EXPECT_EQ(attached.back()->probeAccess(), ENODEV);
    }
    EXPECT_TRUE(attached[0]->isEqual(*removed[3])); // in the order in which they went
    EXPECT_FALSE(attached[0]->isEqual(*attached[4])) << "another attach";
    const auto closed = std::exchange(manager, hid->createManager());
    closed->close();
    mouse->attach();
    watch();
    ASSERT_TRUE(QTest::qWaitFor([&] { return attached.size() == 12; }, waitTimeout))
        << "seen by the other only";
}

TEST_F(HotplugTest, MissesNoChangeBetweenListAndWatch)
{
    const auto early = attachMouse("basilisk-v3-pro-wired");
    const auto listed = manager->copyDevices();
    ASSERT_THAT(listed, SizeIs(4));
    early->vanish();
    const auto late = attachMouse("basilisk-v3", {}, 2);
    watch();
    EXPECT_THAT(attached, SizeIs(0)) << "only from the event loop";
    ASSERT_TRUE(QTest::qWaitFor([&] { return attached.size() == 4 && removed.size() == 4; }, waitTimeout));
    late->vanish();
    MockMouse::areEventsLost = true;
    early->attach();
    ASSERT_TRUE(QTest::qWaitFor([&] { return attached.size() == 8 && removed.size() == 8; }, waitTimeout));
    EXPECT_EQ(listed[0]->beginExchange(), ENODEV);
    EXPECT_EQ(listed[0]->properties().maxFeatureReportSize, std::nullopt) << "too late to ask";
}

/// A thousand times it is gone and there again.
TEST_F(HotplugTest, FollowsManyAttachesAndDetaches)
{
    const auto mouse = attachMouse("basilisk-v3");
    watch();
    QEventLoop loop;
    std::thread storm([&] {
        for (int attach = 0; attach < 1000; ++attach) {
            mouse->tell("remove");
            mouse->tell("add");
        }
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    storm.join();
    ASSERT_TRUE(QTest::qWaitFor([&] { return attached.size() == removed.size() + 4; }, waitTimeout));
    EXPECT_GE(removed.size(), 3996U); // the first may come before the mouse has been listed
    for (std::size_t interface = 0; interface < 4; ++interface) {
        const auto &device = attached[attached.size() - 4 + interface];
        EXPECT_EQ(device->path(), mouse->hidrawNode(interface));
        EXPECT_EQ(device->probeAccess(), 0);
    }
}

TEST_F(HotplugTest, ACallbackMayEndTheManager)
{
    const auto mouse = attachMouse("basilisk-v3");
    for (const bool isEvent : {false, true}) {
        manager = hid->createManager();
        watch();
        if (isEvent) {
            QCoreApplication::processEvents(); // what is there is known now
            mouse->detach();
        }
        int calls = 0;
        const auto end = [&](const auto &) { ++calls, manager.reset(); };
        manager->registerDeviceMatchingCallback(end);
        manager->registerDeviceRemovalCallback(end);
        ASSERT_TRUE(QTest::qWaitFor([&] { return calls > 0; }, waitTimeout));
        EXPECT_EQ(calls, 1);
    }
}

} // namespace kelmoth
