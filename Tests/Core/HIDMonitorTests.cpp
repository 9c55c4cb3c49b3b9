// Which interfaces are listed, by what rules, and what is said of it. What travels to a listed mouse is
// tested beside this, against simulated mice.

#include "Core/HID/HIDMonitor.h"
#include "Tests/Core/FakeHID.h"
#include "Tests/Core/RecordedLog.h"
#include "Tests/Simulated/ManualTime.h"

#include <QCoroTask>
#include <QSignalSpy>
#include <gmock/gmock.h>

namespace kelmoth {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HIDMonitorTest : public testing::Test {
protected:
    ~HIDMonitorTest() override
    {
        monitor.reset();
        Platform::setCurrent({});
    }

    std::vector<std::uint16_t> listed() const
    {
        std::vector<std::uint16_t> productIDs;
        for (const auto &device : monitor->connectedDevices()) {
            productIDs.push_back(device.productID);
        }
        return productIDs;
    }

    /// The log without the lines of the transfer thread, which come when they come.
    std::vector<std::string> lines()
    {
        auto all = m_log->takeLines();
        std::erase_if(all, [](const std::string &line) { return line.find("USB dev") != std::string::npos; });
        return all;
    }

    Platform platform() const
    {
        Platform made;
        made.hid = hid;
        made.usb = std::make_shared<NoUSB>();
        made.sleeper = std::make_shared<ManualTime>();
        return made;
    }

    std::shared_ptr<FakeHIDService> hid = std::make_shared<FakeHIDService>();
    std::unique_ptr<HIDMonitor> monitor = std::make_unique<HIDMonitor>(platform());

private:
    std::shared_ptr<RecordedLog> m_log = RecordedLog::install();
};

TEST_F(HIDMonitorTest, ListsOnlyInterfacesThatSpeakTheProtocol)
{
    auto named = FakeHIDDevice::make(0x1532, 0x1234);
    named->strings["Product"] = "100% %s %n";
    auto byName = FakeHIDDevice::make(0x1532, 0x1234, -1, "Bluetooth");
    byName->strings["Product"] = "Basilisk V3 Pro";
    auto nameless = FakeHIDDevice::make(0x1532, 0x00AB, 90);
    nameless->strings.clear();
    auto withoutVendor = FakeHIDDevice::make(0x1532, 0x00AC);
    withoutVendor->integers.erase("VendorID");
    auto withoutProduct = FakeHIDDevice::make(0x1532, 0x00AC);
    withoutProduct->integers.erase("ProductID");
    hid->present = {
        FakeHIDDevice::make(0x1532, 0x0099, 89),
        FakeHIDDevice::make(0x1532, 0x0099, -1),
        FakeHIDDevice::make(0x1532, 0x0099, 91),
        FakeHIDDevice::make(0x1532, 0x0099, 90),                 // a second one of the same
        FakeHIDDevice::make(0x1532, 0x0099, -1, "bluetooth LE"), // the same by radio
        FakeHIDDevice::make(0x1532, 0x0099, 90, "BLUETOOTH"),
        FakeHIDDevice::make(0x068E, 0x00AA),
        FakeHIDDevice::make(0x046D, 0x00AA),
        FakeHIDDevice::make(0x1532, 0x1'00AA), // IDs that no USB device has
        FakeHIDDevice::make(0x1532, -0xFF55),
        FakeHIDDevice::make(0x1'1532, 0x00AA),
        withoutVendor,
        withoutProduct,
        named,
        byName,
        nameless,
    };
    monitor->startMonitoring();
    EXPECT_THAT(listed(), ElementsAre(0x0099, 0x0099, 0x00AA, 0x1234, 0x00AB));
    EXPECT_EQ(monitor->connectedDevices().back().transport, "Unknown");
    EXPECT_THAT(hid->matching, ElementsAre(0x1532, 0x068E));
    EXPECT_THAT(lines(),
                ElementsAre("✅ Razer device connected: Razer Basilisk V3 (PID: 0x0099)",
                            "✅ Razer device connected: Razer Basilisk V3 (PID: 0x0099)",
                            "✅ Razer device connected: Razer Basilisk V3 Pro (Wired) (PID: 0x00AA)",
                            "Unsupported Razer device: 100% %s %n PID:0x1234",
                            "✅ Razer device connected: Razer Basilisk V3 Pro (Wireless) (PID: 0x1234)",
                            "✅ Razer device connected: Razer Basilisk V3 Pro (Wireless) (PID: 0x00AB)",
                            "HID monitoring started"));
    // Only one of them is a mouse whose battery may be asked for.
    for (const auto &device : monitor->connectedDevices()) {
        EXPECT_EQ(monitor->isBatteryMonitored(device.id), device.productID == 0x00AB);
    }
}

TEST_F(HIDMonitorTest, FollowsWhatComesAndGoes)
{
    monitor->startMonitoring();
    monitor->startMonitoring();
    EXPECT_EQ(hid->managers, 1);
    QSignalSpy changes(monitor.get(), &HIDMonitor::connectedDevicesChanged);
    const auto mouse = FakeHIDDevice::make(0x1532, 0x00AA);
    const auto ignored = FakeHIDDevice::make(0x1532, 0x00AA, 16);
    hid->attached(mouse);
    hid->attached(ignored);
    hid->attached(mouse); // reported again
    ASSERT_THAT(listed(), ElementsAre(0x00AA));
    const auto first = monitor->connectedDevices().front();
    EXPECT_EQ(monitor->deviceHandle(first.id), mouse);
    EXPECT_TRUE(monitor->isBatteryMonitored(first.id));
    lines();

    hid->removed(ignored);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_THAT(lines(), IsEmpty());
    hid->removed(mouse);
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_EQ(changes.count(), 2);
    EXPECT_EQ(monitor->deviceHandle(first.id), nullptr);
    EXPECT_FALSE(monitor->isBatteryMonitored(first.id));
    EXPECT_THAT(lines(),
                ElementsAre("🔌 Razer device disconnected: Razer Basilisk V3 Pro (Wired) (PID: 0x00AA)"));

    hid->attached(mouse);
    EXPECT_NE(monitor->connectedDevices().front().id, first.id);
}

TEST_F(HIDMonitorTest, StopsAndFailsCleanly)
{
    hid->canCreate = false;
    monitor->startMonitoring();
    EXPECT_FALSE(monitor->isMonitoring());
    EXPECT_THAT(lines(), ElementsAre("❌ Failed to create IOHIDManager"));

    hid->canCreate = true;
    hid->openStatus = EACCES;
    monitor->startMonitoring();
    EXPECT_FALSE(monitor->isMonitoring());
    EXPECT_EQ(hid->attached, nullptr);
    EXPECT_THAT(lines(), ElementsAre("❌ Failed to open IOHIDManager: 0xD"));

    hid->openStatus = 0;
    hid->present = {FakeHIDDevice::make(0x1532, 0x00AA)};
    monitor->startMonitoring();
    EXPECT_TRUE(monitor->isMonitoring());
    monitor->stopMonitoring();
    monitor->stopMonitoring();
    EXPECT_FALSE(monitor->isMonitoring());
    EXPECT_EQ(hid->attached, nullptr);
    EXPECT_THAT(listed(), ElementsAre(0x00AA));
    EXPECT_TRUE(monitor->isBatteryMonitored(monitor->connectedDevices().front().id));
}

TEST_F(HIDMonitorTest, SendsNothingToAMouseThatTakesNoCommands)
{
    RazerDevice bluetooth;
    bluetooth.vendorID = razerVendorID;
    bluetooth.productID = 0x0099;
    bluetooth.transport = "Bluetooth";
    RazerDevice stranger = bluetooth;
    stranger.transport = "USB";
    stranger.vendorID = otherVendorID;
    RazerDevice unknown = stranger;
    unknown.vendorID = razerVendorID;
    unknown.productID = 0x1234;
    for (const auto &device : {bluetooth, stranger, unknown}) {
        auto answer = monitor->send(command::getLiftOff{}, device);
        EXPECT_TRUE(answer.isReady()); // without a turn on the transfer thread
        EXPECT_EQ(QCoro::waitFor(std::move(answer)), std::nullopt);
    }
    RazerDevice gone = unknown;
    gone.productID = 0x0099;
    EXPECT_EQ(QCoro::waitFor(monitor->send(command::getLiftOff{}, gone)), std::nullopt);
}

} // namespace
} // namespace kelmoth
