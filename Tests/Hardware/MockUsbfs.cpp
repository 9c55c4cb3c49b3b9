#include "Tests/Hardware/MockUsbfs.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>
#include <utility>

namespace kelmoth {

namespace {

constexpr std::size_t setupSize = 8;

template <class T> T load(std::span<const std::uint8_t> bytes)
{
    T value{};
    std::memcpy(&value, bytes.data(), std::min(sizeof value, bytes.size()));
    return value;
}

template <class T> std::vector<std::uint8_t> dump(const T &value)
{
    std::vector<std::uint8_t> bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

constexpr std::uint8_t low(std::size_t value)
{
    return static_cast<std::uint8_t>(value);
}

constexpr std::uint8_t high(std::size_t value)
{
    return static_cast<std::uint8_t>(value >> 8);
}

} // namespace

MockUsbfs::MockUsbfs(std::shared_ptr<SimulatedMouse> mouse, std::vector<bool> hasDriver, int deviceNumber)
    : m_mouse(std::move(mouse)), m_hasDriver(std::move(hasDriver)), m_deviceNumber(deviceNumber)
{
}

std::vector<std::uint8_t> MockUsbfs::descriptors() const
{
    const auto &model = m_mouse->model();
    std::vector<std::uint8_t> bytes{
        18,
        1, // device
        0x00,
        0x02, // USB 2.0
        0,
        0,
        0,
        64,
        low(model.vendorID),
        high(model.vendorID),
        low(model.productID),
        high(model.productID),
        0x00,
        0x02,
        1,
        2,
        3, // strings
        1, // configurations
    };
    const std::size_t total = 9 + 9 * m_hasDriver.size();
    bytes.insert(bytes.end(), {9, 2, low(total), high(total), low(m_hasDriver.size()), 1, 0, 0xA0, 250});
    for (std::size_t i = 0; i < m_hasDriver.size(); ++i) {
        bytes.insert(bytes.end(), {9, 4, low(i), 0, 0, 3, 0, 0, 0});
    }
    return bytes;
}

void MockUsbfs::handle(MockIoctl &ioctl)
{
    const bool isReap = ioctl.request() == USBDEVFS_REAPURB || ioctl.request() == USBDEVFS_REAPURBNDELAY;
    if (!m_mouse->isAttached() && !isReap) {
        ioctl.fail(ENODEV);
        return;
    }
    switch (ioctl.request()) {
    case USBDEVFS_CONNECTINFO:
        connectInfo(ioctl);
        return;
    case USBDEVFS_CONTROL:
        control(ioctl);
        return;
    case USBDEVFS_GET_CAPABILITIES:
        MockIoctl::write(ioctl.argument(sizeof(std::uint32_t)).get(), dump(std::uint32_t{0}));
        ioctl.succeed();
        return;
    case USBDEVFS_CLAIMINTERFACE:
        claim(ioctl);
        return;
    case USBDEVFS_RELEASEINTERFACE:
        ioctl.succeed();
        return;
    case USBDEVFS_SUBMITURB:
        submit(ioctl);
        return;
    case USBDEVFS_REAPURB:
    case USBDEVFS_REAPURBNDELAY:
        reap(ioctl);
        return;
    case USBDEVFS_IOCTL: // to an interface's driver: libusb uses it to detach and attach drivers
    case USBDEVFS_DISCONNECT:
    case USBDEVFS_DISCONNECT_CLAIM:
        ++m_driverDetaches;
        ioctl.succeed();
        return;
    default:
        ioctl.fail(ENOTTY);
    }
}

void MockUsbfs::connectInfo(MockIoctl &ioctl) const
{
    const ::usbdevfs_connectinfo info{.devnum = static_cast<unsigned>(m_deviceNumber), .slow = 0};
    MockIoctl::write(ioctl.argument(sizeof info).get(), dump(info));
    ioctl.succeed();
}

/// GET_CONFIGURATION is all that libusb asks this way.
void MockUsbfs::control(MockIoctl &ioctl) const
{
    const auto argument = ioctl.argument(sizeof(::usbdevfs_ctrltransfer));
    const auto transfer = load<::usbdevfs_ctrltransfer>(MockIoctl::bytes(argument.get()));
    if (transfer.bRequestType != 0x80 || transfer.bRequest != 8 || transfer.wLength < 1) {
        ioctl.fail(EPIPE);
        return;
    }
    const auto data = MockIoctl::pointee(argument.get(), offsetof(::usbdevfs_ctrltransfer, data), 1);
    MockIoctl::write(data.get(), std::array<std::uint8_t, 1>{1});
    ioctl.succeed(1);
}

void MockUsbfs::claim(MockIoctl &ioctl)
{
    ++m_claims;
    const auto number = load<unsigned>(MockIoctl::bytes(ioctl.argument(sizeof(unsigned)).get()));
    if (number >= m_hasDriver.size()) {
        ioctl.fail(ENOENT);
    } else if (m_hasDriver[number]) {
        ioctl.fail(EBUSY);
    } else {
        ioctl.succeed();
    }
}

void MockUsbfs::submit(MockIoctl &ioctl)
{
    m_urb = ioctl.argument(sizeof(::usbdevfs_urb));
    const auto urb = MockIoctl::bytes(m_urb.get());
    const auto size = load<int>(std::span(urb).subspan(offsetof(::usbdevfs_urb, buffer_length)));
    const auto data =
        MockIoctl::pointee(m_urb.get(), offsetof(::usbdevfs_urb, buffer), static_cast<std::size_t>(size));
    auto buffer = MockIoctl::bytes(data.get());
    const auto outcome = perform(buffer);
    MockIoctl::write(data.get(), buffer);
    MockIoctl::write(m_urb.get(), dump(-outcome.status), offsetof(::usbdevfs_urb, status));
    MockIoctl::write(m_urb.get(), dump(static_cast<int>(outcome.length)),
                     offsetof(::usbdevfs_urb, actual_length));
    ioctl.succeed();
}

MockUsbfs::Outcome MockUsbfs::perform(std::vector<std::uint8_t> &buffer)
{
    if (buffer.size() < setupSize) {
        return {EINVAL, 0};
    }
    const auto word = [&](std::size_t at) {
        return static_cast<std::uint16_t>(buffer[at] | buffer[at + 1] << 8);
    };
    const auto data = std::span(buffer).subspan(setupSize);
    const bool isFeatureReport0 = word(2) == 0x0300 && word(6) == data.size();
    if (isFeatureReport0 && buffer[0] == 0x21 && buffer[1] == 0x09) {
        const int status = m_mouse->setReport(word(4), data);
        return {status, status == 0 ? data.size() : 0};
    }
    if (isFeatureReport0 && buffer[0] == 0xA1 && buffer[1] == 0x01) {
        const auto read = m_mouse->getReport(word(4), data);
        return {read.status, read.length};
    }
    return {EPIPE, 0};
}

void MockUsbfs::reap(MockIoctl &ioctl)
{
    if (!m_urb) {
        ioctl.fail(m_mouse->isAttached() ? EAGAIN : ENODEV);
        return;
    }
    const auto pointer = ioctl.argument(sizeof(void *));
    umockdev_ioctl_data_set_ptr(pointer.get(), 0, m_urb.get());
    m_urb.reset();
    ioctl.succeed();
}

} // namespace kelmoth
