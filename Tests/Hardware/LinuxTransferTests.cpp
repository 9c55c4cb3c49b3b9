// What travels through hidraw nodes and usbfs, and what becomes of each failure there.

#include "Platform/Linux/ExchangeLock.h"
#include "Tests/Hardware/HardwareTest.h"

#include <cerrno>
#include <fcntl.h>
#include <numeric>
#include <optional>
#include <tuple>

namespace kelmoth {
namespace {

using testing::SizeIs;
using Kind = SimulatedFault::Kind;
using Bytes = std::vector<std::uint8_t>;

/// A request for the battery level, as the mouse wants it.
Bytes batteryRequest()
{
    Bytes report(90);
    report[1] = 0x1F;
    report[5] = 0x02;
    report[6] = 0x07;
    report[7] = 0x80;
    report[88] = 0x85;
    return report;
}

class LinuxTransferTest : public HardwareTest {
protected:
    /// The way through USB to a mouse, with this interface opened.
    std::unique_ptr<USBDeviceInterface> usbInterface(const MockMouse &mouse, std::uint16_t number,
                                                     int expected)
    {
        const auto matches = usb->matchingDevices(0x1532, mouse.mouse().model().productID);
        EXPECT_EQ(matches.status, 0);
        EXPECT_THAT(matches.devices, SizeIs(1));
        auto created = matches.devices.front()->createInterface();
        EXPECT_EQ(created.status, 0);
        EXPECT_EQ(created.interface->open(number), expected);
        return std::move(created.interface);
    }

    static int set(USBDeviceInterface &way, std::span<std::uint8_t> report, std::uint16_t wIndex = 0)
    {
        return way.deviceRequest({0x21, 0x09, 0x0300, wIndex, report});
    }
    static int get(USBDeviceInterface &way, std::span<std::uint8_t> buffer, std::uint16_t wIndex = 0)
    {
        return way.deviceRequest({0xA1, 0x01, 0x0300, wIndex, buffer});
    }

    /// Sends the request and reads its answer.
    void askForBattery(USBDeviceInterface &way)
    {
        EXPECT_EQ(set(way, report), 0);
        time->advance(std::chrono::seconds{1});
        EXPECT_EQ(get(way, answer), 0);
        EXPECT_EQ(answer[7], 0x80);
    }

    /// A mouse with no driver at the interface that takes the commands.
    static MockMouseOptions unbound()
    {
        return {.interfaces = std::vector{MockInterface{.hasDriver = false}}};
    }

    static constexpr const char *model = "basilisk-v3-pro";
    Bytes report = batteryRequest();
    Bytes answer = Bytes(90);
};

TEST_F(LinuxTransferTest, ReportsTravelUnchangedBesideTheDriver)
{
    const auto mouse = attachMouse(model);
    const auto way = usbInterface(*mouse, 0, EBUSY);
    const auto device = hidDevice(mouse->hidrawNode(0));
    const ExchangeScope exchange(*way);
    ASSERT_EQ(exchange.status(), 0);
    askForBattery(*way);

    EXPECT_EQ(device->setFeatureReport(report), 0);
    time->advance(std::chrono::seconds{1});
    Bytes longer(91);
    const auto read = device->getFeatureReport(longer);
    EXPECT_EQ(std::tuple(read.status, read.length), std::tuple(0, 90U));
    EXPECT_EQ(Bytes(longer.begin(), longer.end() - 1), answer);

    const auto transfers = mouse->mouse().takeTransfers();
    ASSERT_THAT(transfers, SizeIs(4));
    EXPECT_EQ(transfers[0].bytes, report);
    EXPECT_EQ(transfers[1].bytes, answer);
    EXPECT_EQ(transfers[2].bytes, report);
    EXPECT_EQ(mouse->driverDetaches(), 0);
}

TEST_F(LinuxTransferTest, ReportsTravelThroughLibusbWhereNoDriverIs)
{
    const auto mouse = attachMouse(model, unbound());
    const auto way = usbInterface(*mouse, 0, 0);
    {
        const ExchangeScope exchange(*way);
        ASSERT_EQ(exchange.status(), 0);
        askForBattery(*way);
        const FileDescriptor other(::open(mouse->usbNode().c_str(), O_RDWR));
        EXPECT_EQ(takeExchange(other.get(), *time), EBUSY);
    }
    const ExchangeScope free(*way);
    EXPECT_EQ(free.status(), 0);
    const auto transfers = mouse->mouse().takeTransfers();
    ASSERT_THAT(transfers, SizeIs(2));
    EXPECT_EQ(transfers[0].bytes, report);
    EXPECT_EQ(mouse->driverDetaches(), 0);
    Bytes endless(70000);
    EXPECT_EQ(set(*way, endless), EINVAL);
}

TEST_F(LinuxTransferTest, OtherRequestsAreNotCarried)
{
    const auto mouse = attachMouse(model);
    const auto way = usbInterface(*mouse, 0, EBUSY);
    EXPECT_EQ(way->deviceRequest({0x21, 0x09, 0x0200, 0, report}), ENOTSUP);
    EXPECT_EQ(way->deviceRequest({0x21, 0x0B, 0x0300, 0, report}), ENOTSUP);
    EXPECT_EQ(set(*way, report, 1), ENOTSUP) << "an interface that was not opened";
    Bytes endless(16384);
    EXPECT_EQ(set(*way, endless), EINVAL);
    EXPECT_THAT(mouse->mouse().takeTransfers(), SizeIs(0));

    // An interface that the mouse does not have.
    const auto nowhere = usbInterface(*mouse, 7, ENOENT);
    EXPECT_EQ(set(*nowhere, report, 7), ENXIO);
    EXPECT_EQ(ExchangeScope(*nowhere).status(), ENXIO);
    EXPECT_THAT(usb->matchingDevices(0x1532, 0x0001).devices, SizeIs(0));
}

/// What libusb makes of each failure. (Those of hidraw come back as they are.)
TEST_F(LinuxTransferTest, FailuresOfLibusbComeBackAsErrno)
{
    struct Row {
        std::string what;
        SimulatedFault fault;
        int set;
        int get;
    };
    const auto failed = [](int error, int skip) {
        return SimulatedFault{.kind = Kind::failedTransfer, .skip = skip, .error = error};
    };
    const std::vector<Row> rows{
        {"SET stalls", failed(EPIPE, 0), EPIPE, 0},
        {"GET stalls", failed(EPIPE, 1), 0, EPIPE},
        {"GET is cut off", failed(EPROTO, 1), 0, EIO},
        {"GET overflows", failed(EOVERFLOW, 1), 0, EOVERFLOW},
        {"GET is short", {.kind = Kind::shortRead}, 0, EIO},
        {"pulled out at SET", {.kind = Kind::unplug}, ENODEV, ENODEV},
        {"pulled out at GET", {.kind = Kind::unplug, .skip = 1}, 0, ENODEV},
    };
    for (const auto &row : rows) {
        const auto mouse = attachMouse(model, unbound());
        const auto way = usbInterface(*mouse, 0, 0);
        mouse->mouse().addFault(row.fault);
        EXPECT_EQ(set(*way, report), row.set) << row.what;
        EXPECT_EQ(get(*way, answer), row.get) << row.what;
    }
}

TEST_F(LinuxTransferTest, AnAccessRightThatComesLateIsWaitedForOnce)
{
    const auto mouse = attachMouse(model);
    mouse->permit(false);
    std::optional<WithoutRights> user(std::in_place);
    const auto way = usbInterface(*mouse, 0, EACCES);
    const auto device = hidDevice(mouse->hidrawNode(0));
    EXPECT_EQ(set(*way, report), EACCES);
    const auto pauses = time->takePauses();
    EXPECT_EQ(std::accumulate(pauses.begin(), pauses.end(), std::chrono::microseconds{}),
              std::chrono::milliseconds{310});
    EXPECT_EQ(ExchangeScope(*way).status(), EACCES);
    EXPECT_EQ(get(*way, answer), EACCES);
    EXPECT_EQ(device->probeAccess(), EACCES);
    EXPECT_EQ(device->getFeatureReport(answer).status, EACCES);
    EXPECT_THAT(time->takePauses(), SizeIs(0)) << "the same attach";
    user.reset();
    mouse->permit(true);
    EXPECT_EQ(set(*way, report), 0);

    // The next attach is waited for again, and now the right comes.
    mouse->detach();
    mouse->attach();
    mouse->permit(false);
    user.emplace();
    time->onSleep = [&] {
        user.reset();
        mouse->permit(true);
    };
    EXPECT_EQ(hidDevice(mouse->hidrawNode(0))->probeAccess(), 0);
    EXPECT_THAT(time->takePauses(), SizeIs(1));
}

TEST_F(LinuxTransferTest, AVanishedOrReusedNodeIsNeverWrittenTo)
{
    const auto mouse = attachMouse(model);
    const auto matches = usb->matchingDevices(0x1532, 0x00AC);
    const auto way = usbInterface(*mouse, 0, EBUSY);
    const auto device = hidDevice(mouse->hidrawNode(0));
    mouse->reuseNodes(0x0042); // the number went to another device
    EXPECT_EQ(device->probeAccess(), ENODEV);
    EXPECT_EQ(set(*way, report), ENODEV);
    mouse->vanish(); // the event has not come yet
    EXPECT_EQ(device->setFeatureReport(report), ENOENT);
    EXPECT_EQ(way->open(0), ENOENT);
    EXPECT_EQ(set(*way, report), ENXIO);
    EXPECT_EQ(matches.devices.front()->createInterface().status, ENODEV);
    EXPECT_THAT(mouse->mouse().takeTransfers(), SizeIs(0));
}

} // namespace
} // namespace kelmoth
