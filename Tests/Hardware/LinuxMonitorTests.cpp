// The whole way from the monitor to the wire: what each fault of a system or a mouse ends in.

#include "Core/HID/HIDMonitor.h"
#include "Tests/Core/RecordedLog.h"
#include "Tests/Hardware/HardwareTest.h"

#include <QCoroTask>

#include <algorithm>
#include <cerrno>

namespace kelmoth {
namespace {

using testing::Contains;
using testing::SizeIs;
using Kind = SimulatedFault::Kind;

class LinuxMonitorTest : public HardwareTest {
protected:
    ~LinuxMonitorTest() override
    {
        monitor.reset();
        Platform::setCurrent({});
    }

    void watch()
    {
        Platform platform;
        platform.sleeper = time;
        platform.hid = hid;
        platform.usb = usb;
        monitor = std::make_unique<HIDMonitor>(platform);
        monitor->startMonitoring();
    }

    std::shared_ptr<RecordedLog> log = RecordedLog::install();
    std::unique_ptr<HIDMonitor> monitor;
};

/// Up to five attempts by USB, and up to five more by HID reports when those gave no answer at all.
TEST_F(LinuxMonitorTest, EveryFaultEndsInALineOrAnIgnoredDevice)
{
    enum class Outcome { ignored, unanswered, answered };
    using enum Outcome;
    struct Row {
        std::string what;
        MockMouseOptions options;
        std::optional<SimulatedFault> fault;
        std::function<void(MockMouse &)> trouble; ///< before the mouse is listed
        Outcome outcome;
        int attempts; ///< requests that reached the kernel's driver
        std::string line;
    };
    const auto failed = [](int error, int skip = 0, int times = 1) {
        return SimulatedFault{.kind = Kind::failedTransfer, .skip = skip, .times = times, .error = error};
    };
    const auto none = [](MockMouse &) {};
    const auto deny = [](MockMouse &mouse) { mouse.permit(false); };
    const auto removeNode = [this](MockMouse &mouse) { testbed->removeNode(mouse.hidrawNode(3)); };
    const auto reuseNode = [](MockMouse &mouse) { mouse.reuseNodes(0x1234); };
    const auto shortWrite = [](MockMouse &mouse) { mouse.cutNextWrite(); };
    const std::vector<MockInterface> liar(4,
                                          {.reportDescriptor = {0x75, 0x08, 0x95, 0x5A, 0xB1, 0x02, 0xC0}});
    const std::string started = "HID monitoring started";
    const std::string connected = "✅ Razer device connected: Razer Basilisk V3 (PID: 0x0099)";
    const std::string unsent = "❌ USB SET_REPORT failed: 0x";
    const std::string unread = "❌ USB GET_REPORT failed: 0x";
    const std::vector<Row> rows{
        {"nothing wrong", {}, {}, none, answered, 1, connected},
        {"permission denied", {}, {}, deny, unanswered, 0, unsent + "D"},
        {"vanished before it is opened", {}, {}, removeNode, unanswered, 0, unsent + "2"},
        {"its node is another device's", {}, {}, reuseNode, unanswered, 0, unsent + "13"},
        {"SET stalls", {}, failed(EPIPE), none, answered, 2, unsent + "20"},
        {"SET fails", {}, failed(EIO), none, answered, 2, unsent + "5"},
        {"SET times out", {}, failed(ETIMEDOUT), none, answered, 2, unsent + "6E"},
        {"GET stalls", {}, failed(EPIPE, 1), none, answered, 2, unread + "20"},
        {"GET fails", {}, failed(EIO, 1), none, answered, 2, unread + "5"},
        {"GET times out", {}, failed(ETIMEDOUT, 1), none, answered, 2, unread + "6E"},
        {"everything fails", {}, failed(EPROTO, 0, -1), none, unanswered, 10, unsent + "47"},
        {"pulled out at SET", {}, {{.kind = Kind::unplug}}, none, unanswered, 10, unsent + "13"},
        {"pulled out at GET", {}, {{.kind = Kind::unplug, .skip = 1}}, none, unanswered, 10, unread + "13"},
        {"a short write", {}, {}, shortWrite, answered, 2, unsent + "5"},
        {"a short read", {}, {{.kind = Kind::shortRead}}, none, answered, 2, unread + "5"},
        {"short reads only",
         {},
         {{.kind = Kind::shortRead, .times = -1}},
         none,
         unanswered,
         10,
         unread + "5"},
        {"a lying descriptor", {.interfaces = liar}, {}, none, ignored, 0, started},
        {"a product beyond 16 bits", {.hidID = "3:1532:10099"}, {}, none, ignored, 0, started},
        {"a name that is not UTF-8", {.product = "\xC3(%n\x1B["}, {}, none, answered, 1, connected},
    };
    for (const auto &row : rows) {
        const auto mouse = attachMouse("basilisk-v3", row.options);
        row.trouble(*mouse);
        const WithoutRights user;
        watch();
        const auto devices = monitor->connectedDevices();
        ASSERT_THAT(devices, SizeIs(row.outcome == ignored ? 0 : 1)) << row.what;
        if (row.fault) {
            mouse->mouse().addFault(*row.fault);
        }
        if (row.outcome != ignored) {
            const auto answer = QCoro::waitFor(monitor->send(command::getDPIStages{}, devices.front()));
            EXPECT_EQ(answer.has_value(), row.outcome == answered) << row.what;
        }
        EXPECT_EQ(std::ranges::count(mouse->mouse().takeTransfers(), true, &SimulatedMouse::Transfer::isSet),
                  row.attempts)
            << row.what;
        EXPECT_THAT(log->takeLines(), Contains(row.line)) << row.what;
        EXPECT_EQ(mouse->driverDetaches(), 0);
        monitor.reset();
    }
}

TEST_F(LinuxMonitorTest, AMouseThatComesBackIsAnotherDevice)
{
    const auto mouse = makeMouse("basilisk-v3");
    watch();
    EXPECT_THAT(monitor->connectedDevices(), SizeIs(0));
    QUuid last;
    for (int round = 0; round < 2; ++round) {
        mouse->attach();
        ASSERT_TRUE(waitUntil([&] { return monitor->connectedDevices().size() == 1; }));
        const auto device = monitor->connectedDevices().front();
        EXPECT_NE(device.id, last);
        last = device.id;
        EXPECT_TRUE(QCoro::waitFor(monitor->send(command::getDPIStages{}, device)));
        mouse->detach();
        ASSERT_TRUE(waitUntil([&] { return monitor->connectedDevices().empty(); }));
    }
    EXPECT_EQ(mouse->mouse().takeTransfers().size(), 4U) << "each at the first attempt";
}

} // namespace
} // namespace kelmoth
