// What travels to an attached mouse, and what becomes of each failure on the way.

#include "Core/HID/HIDMonitor.h"
#include "Core/HID/RazerProtocol.h"
#include "Platform/Linux/ExchangeLock.h"
#include "Tests/Core/RecordedLog.h"
#include "Tests/Hardware/HardwareTest.h"

#include <QCoroTask>
#include <libusb.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <numeric>

unsigned timeLimit = 0; ///< of the last transfer through libusb, in milliseconds

extern "C" int libusb_control_transfer(libusb_device_handle *handle, std::uint8_t type, std::uint8_t request,
                                       std::uint16_t value, std::uint16_t index, unsigned char *data,
                                       std::uint16_t length, unsigned limit)
{
    static auto *const transfer =
        reinterpret_cast<decltype(&libusb_control_transfer)>(::dlsym(RTLD_NEXT, "libusb_control_transfer"));
    timeLimit = limit;
    return transfer(handle, type, request, value, index, data, length, limit);
}

namespace kelmoth {

using testing::SizeIs;
using Kind = SimulatedFault::Kind;

class LinuxTransferTest : public HardwareTest {
protected:
    ~LinuxTransferTest() override { Platform::setCurrent({}); }

    /// The way through USB to a mouse, with this interface opened.
    std::unique_ptr<USBDeviceInterface> usbInterface(std::uint16_t number, int expected)
    {
        const auto matches = usb->matchingDevices(0x1532, 0x00AC);
        EXPECT_THAT(matches.devices, SizeIs(1));
        auto interface = matches.devices.front()->createInterface().interface;
        EXPECT_EQ(interface->open(number), expected);
        return interface;
    }

    static int set(USBDeviceInterface &way, std::span<std::uint8_t> report, std::uint16_t wIndex = 0)
    {
        return way.deviceRequest({0x21, 0x09, 0x0300, wIndex, report});
    }
    int get(USBDeviceInterface &way) { return way.deviceRequest({0xA1, 0x01, 0x0300, 0, answer}); }

    static constexpr const char *model = "basilisk-v3-pro";
    Data report = RazerProtocol::createReport(command::getBatteryLevel{}, {});
    Data answer = Data(90);
};

/// Up to five attempts by USB, and up to five more by HID reports when those gave no answer at all.
TEST_F(LinuxTransferTest, EveryFaultIsLoggedOrIgnored)
{
    using Trouble = std::function<void(MockMouse &)>;
    struct Row {
        std::string what;
        std::optional<bool> isAnswered; ///< absent: the device is ignored
        int attempts;                   ///< requests that reached the kernel's driver
        std::string line;
        Trouble trouble = [](MockMouse &) {};
        MockMouseOptions options = {};
    };
    const auto fault = [](const SimulatedFault &added) -> Trouble {
        return [added](MockMouse &attached) { attached.mouse().addFault(added); };
    };
    const std::string unsent = "❌ USB SET_REPORT failed: 0x";
    const std::string unread = "❌ USB GET_REPORT failed: 0x";
    const std::string unmatched = "⚠️ USB command 0x04/0x86: no matching response (attempt 3/5)";
    std::vector<Row> rows{
        {"no trouble", true, 1, "✅ Razer device connected: Razer Basilisk V3 (PID: 0x0099)"},
        {"pulled out at SET", false, 10, unsent + "13", fault({.kind = Kind::unplug})},
        {"pulled out at GET", false, 10, unread + "13", fault({.kind = Kind::unplug, .skip = 1})},
        {"a short write", true, 2, unsent + "5", [](auto &m) { m.hidraw(3).isNextWriteCut = true; }},
        {"interrupted", true, 1, "HID monitoring started", [](auto &m) { m.hidraw(3).interruptions = 10; }},
        {"permission denied", false, 0, unsent + "D", [](auto &m) { m.hidraw(3).isDenied = true; }},
        {"vanished", false, 0, unsent + "2", [this](auto &m) { testbed->removeNode(m.hidrawNode(3)); }},
        {"another device's", false, 0, unsent + "13", [](auto &m) { m.hidraw(3).productID = 0x1234; }},
        {"nine requests unheard", true, 10, unmatched, fault({.kind = Kind::noAnswer, .times = 9})},
        {"never heard", false, 10, unmatched, fault({.kind = Kind::noAnswer, .times = -1})},
        {"not ready", true, 4, unmatched, fault({.kind = Kind::notReady, .times = 3})},
        {"rejected", false, 1, "❌ USB command 0x04/0x86 rejected (status 0x03)",
         fault({.kind = Kind::rejected})},
        {"other answers only", false, 10, unmatched, fault({.kind = Kind::otherCommand, .times = -1})},
        {"a short answer", true, 1, "📥 USB Response: 02 FF 00 00 00 26 04 86 01 01 05 01 01 90 01 90",
         fault({.kind = Kind::shortRead})},
    };
    for (const auto &[error, number] : {std::pair{EPIPE, "20"}, {EIO, "5"}, {ETIMEDOUT, "6E"}}) {
        for (const int skip : {0, 1}) {
            rows.push_back({"failed transfer", true, 2, (skip == 0 ? unsent : unread) + number,
                            fault({.kind = Kind::failedTransfer, .skip = skip, .error = error})});
        }
    }
    const Row ignored{"a lying descriptor", {}, 0, "HID monitoring started"};
    rows.push_back(ignored);
    rows.back().options.interfaces = std::vector(4, ReportDescriptor{0x75, 8, 0x95, 90, 0xB1, 0x02, 0xC0});
    for (const char *id : {"", "0003:00001532:", "0003:00001532:000000000099", "3:1532:9g", "3:1532:0099:1",
                           "3:1532:10099", "0003:0000046D:00000099", "0003:00011532:00000099"}) {
        rows.push_back(ignored);
        rows.back().options.hidID = rows.back().what = id;
    }
    const auto log = RecordedLog::install();
    for (const auto &row : rows) {
        SCOPED_TRACE(row.what);
        const auto mouse = attachMouse("basilisk-v3", row.options);
        row.trouble(*mouse);
        Platform platform;
        platform.sleeper = time;
        platform.hid = hid;
        platform.usb = usb;
        HIDMonitor monitor(platform.hid, platform.usb, platform.sleeper);
        monitor.startMonitoring();
        std::optional<bool> isAnswered;
        for (const auto &device : monitor.connectedDevices()) {
            isAnswered = QCoro::waitFor(monitor.send(command::getDPIStages{}, device)).has_value();
        }
        EXPECT_EQ(isAnswered, row.isAnswered);
        const auto transfers = mouse->mouse().takeTransfers();
        EXPECT_EQ(std::ranges::count(transfers, true, &SimulatedMouse::Transfer::isSet), row.attempts);
        EXPECT_THAT(log->takeLines(), testing::Contains(row.line));
    }
}

TEST_F(LinuxTransferTest, TransfersReportsWithAndWithoutAKernelDriver)
{
    for (const bool hasDriver : {true, false}) {
        const auto mouse = attachMouse(model, {.hasDriver = hasDriver});
        const auto way = usbInterface(0, hasDriver ? EBUSY : 0);
        {
            const ExchangeScope exchange(*way);
            EXPECT_EQ(set(*way, report), 0);
            time->advance(std::chrono::seconds{1});
            EXPECT_EQ(get(*way), 0);
            const auto node = hasDriver ? mouse->hidrawNode(0) : mouse->usbNode();
            for (const auto &file : std::filesystem::directory_iterator("/proc/self/fd")) {
                std::error_code gone;
                if (std::filesystem::read_symlink(file, gone) == testbed->path(node)) {
                    EXPECT_EQ(::fcntl(std::stoi(file.path().filename()), F_GETFD), FD_CLOEXEC) << node;
                }
            }
            const FileDescriptor other(::open(node.c_str(), O_RDWR));
            EXPECT_EQ(takeExchange(other.get(), *time), EBUSY);
        }
        EXPECT_EQ(ExchangeScope(*way).status(), 0);
        EXPECT_EQ(std::exchange(timeLimit, 0U), hasDriver ? 0U : 5000U);
        if (const auto device = hidDevice(mouse->hidrawNode(0))) {
            Data longer(91);
            EXPECT_EQ(device->getFeatureReport(longer).length, 90U);
            EXPECT_TRUE(std::equal(answer.begin(), answer.end(), longer.begin()));
            EXPECT_EQ(device->setFeatureReport(report), 0);
        }
        const auto transfers = mouse->mouse().takeTransfers();
        EXPECT_EQ(transfers.at(0).bytes, report);
        EXPECT_EQ(transfers.at(1).bytes, answer);
        EXPECT_EQ(transfers.size(), hasDriver ? 4 : 2);
        Data endless(70000);
        EXPECT_EQ(set(*way, endless), EINVAL);
        EXPECT_EQ(set(*way, report, 1), ENOTSUP) << "an interface that was not opened";
    }
}

/// What libusb makes of each failure. (Those of hidraw come back as they are.)
TEST_F(LinuxTransferTest, FailuresOfLibusbComeBackAsErrno)
{
    for (const auto &[fault, setStatus, getStatus] : std::vector<std::tuple<SimulatedFault, int, int>>{
             {{.kind = Kind::failedTransfer, .error = EPIPE}, EPIPE, 0},
             {{.kind = Kind::failedTransfer, .skip = 1, .error = EPROTO}, 0, EIO},
             {{.kind = Kind::failedTransfer, .skip = 1, .error = EOVERFLOW}, 0, EOVERFLOW},
             {{.kind = Kind::shortRead}, 0, 0},
             {{.kind = Kind::unplug, .skip = 1}, 0, ENODEV}}) {
        const auto mouse = attachMouse(model, {.hasDriver = false});
        const auto way = usbInterface(0, 0);
        mouse->mouse().addFault(fault);
        EXPECT_EQ(set(*way, report), setStatus) << getStatus;
        EXPECT_EQ(get(*way), getStatus) << setStatus;
    }
}

TEST_F(LinuxTransferTest, LatePermissionIsAwaitedOncePerAttach)
{
    const auto mouse = attachMouse(model);
    mouse->hidraw(0).isDenied = true;
    const auto way = usbInterface(0, EBUSY);
    EXPECT_EQ(set(*way, report), EACCES);
    const auto pauses = time->takePauses();
    EXPECT_EQ(std::accumulate(pauses.begin(), pauses.end(), std::chrono::microseconds{}),
              std::chrono::milliseconds{310});
    EXPECT_EQ(ExchangeScope(*way).status(), EACCES);
    EXPECT_THAT(time->takePauses(), SizeIs(0)) << "the same attach";

    mouse->detach();
    mouse->attach();
    mouse->hidraw(0).isDenied = true;
    time->duringPause(1, [&] { mouse->hidraw(0).isDenied = false; });
    EXPECT_EQ(hidDevice(mouse->hidrawNode(0))->probeAccess(), 0);
    EXPECT_THAT(time->takePauses(), SizeIs(2));
}

} // namespace kelmoth
