#include "Tests/Hardware/MockUsbfs.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <linux/usbdevice_fs.h>
#include <span>
#include <sys/ioctl.h>
#include <utility>

namespace kelmoth {

namespace {

constexpr std::size_t setupSize = 8;

constexpr std::uint8_t low(std::size_t value)
{
    return static_cast<std::uint8_t>(value);
}

constexpr std::uint8_t high(std::size_t value)
{
    return static_cast<std::uint8_t>(value >> 8);
}

/// The int at an offset of a structure.
int loadInt(UMockdevIoctlData *data, std::size_t offset)
{
    int value = 0;
    std::memcpy(&value, MockIoctl::bytes(data).data() + offset, sizeof value);
    return value;
}

void storeInt(UMockdevIoctlData *data, std::size_t offset, int value)
{
    MockIoctl::write(data, {reinterpret_cast<const std::uint8_t *>(&value), sizeof value}, offset);
}

/// Performs the control transfer in a buffer of setup packet and data. How many bytes of data moved, or a
/// negative errno.
int perform(SimulatedMouse &mouse, std::span<std::uint8_t> buffer)
{
    const auto word = [&](std::size_t at) {
        return static_cast<std::uint16_t>(buffer[at] | buffer[at + 1] << 8);
    };
    const auto data = buffer.subspan(setupSize);
    if (word(2) != 0x0300 || word(6) != data.size()) {
        return -EPIPE;
    }
    if (word(0) == 0x0921) {
        const int status = mouse.setReport(word(4), data);
        return status == 0 ? static_cast<int>(data.size()) : -status;
    }
    if (word(0) == 0x01A1) {
        const auto read = mouse.getReport(word(4), data);
        return read.status == 0 ? static_cast<int>(read.length) : -read.status;
    }
    return -EPIPE;
}

} // namespace

MockUsbfs::MockUsbfs(std::shared_ptr<SimulatedMouse> mouse, std::vector<bool> hasDriver)
    : m_mouse(std::move(mouse)), m_hasDriver(std::move(hasDriver))
{
}

std::vector<std::uint8_t> MockUsbfs::descriptors() const
{
    const auto vendor = m_mouse->model().vendorID;
    const auto product = m_mouse->model().productID;
    const auto count = low(m_hasDriver.size());
    const std::size_t total = 9 + 9 * m_hasDriver.size();
    std::vector<std::uint8_t> bytes{
        18, 1, 0, 2, 0, 0, 0, 64, low(vendor), high(vendor), low(product), high(product), 0, 2, 1, 2, 3, 1};
    bytes.insert(bytes.end(), {9, 2, low(total), high(total), count, 1, 0, 0xA0, 250});
    for (std::uint8_t i = 0; i < count; ++i) {
        bytes.insert(bytes.end(), {9, 4, i, 0, 0, 3, 0, 0, 0});
    }
    return bytes;
}

void MockUsbfs::handle(MockIoctl &ioctl)
{
    // What was submitted in time can be reaped when the device has gone.
    const bool isReap = ioctl.request() == USBDEVFS_REAPURB || ioctl.request() == USBDEVFS_REAPURBNDELAY;
    if (isReap) {
        reap(ioctl);
        return;
    }
    if (!m_mouse->isAttached()) {
        ioctl.complete(-ENODEV);
        return;
    }
    switch (ioctl.request()) {
    case USBDEVFS_SUBMITURB:
        submit(ioctl);
        return;
    case USBDEVFS_CLAIMINTERFACE:
        ioctl.complete(claim(static_cast<unsigned>(loadInt(ioctl.argument(sizeof(int)).get(), 0))));
        return;
    case USBDEVFS_CONNECTINFO:
    case USBDEVFS_RELEASEINTERFACE:
        ioctl.complete(0);
        return;
    case USBDEVFS_IOCTL: // to an interface's driver: libusb detaches and attaches drivers with it
    case USBDEVFS_DISCONNECT:
    case USBDEVFS_DISCONNECT_CLAIM:
        ++m_driverDetaches;
        ioctl.complete(0);
        return;
    default:
        ioctl.complete(-ENOTTY);
    }
}

int MockUsbfs::claim(unsigned interface) const
{
    if (interface >= m_hasDriver.size()) {
        return -ENOENT;
    }
    return m_hasDriver[interface] ? -EBUSY : 0;
}

void MockUsbfs::submit(MockIoctl &ioctl)
{
    m_urb = ioctl.argument(sizeof(::usbdevfs_urb));
    const int size = loadInt(m_urb.get(), offsetof(::usbdevfs_urb, buffer_length));
    const auto data =
        MockIoctl::pointee(m_urb.get(), offsetof(::usbdevfs_urb, buffer), static_cast<std::size_t>(size));
    auto buffer = MockIoctl::bytes(data.get());
    const int moved = buffer.size() < setupSize ? -EINVAL : perform(*m_mouse, buffer);
    MockIoctl::write(data.get(), buffer);
    storeInt(m_urb.get(), offsetof(::usbdevfs_urb, status), moved < 0 ? moved : 0);
    storeInt(m_urb.get(), offsetof(::usbdevfs_urb, actual_length), moved < 0 ? 0 : moved);
    ioctl.complete(0);
}

void MockUsbfs::reap(MockIoctl &ioctl)
{
    if (!m_urb) {
        ioctl.complete(m_mouse->isAttached() ? -EAGAIN : -ENODEV);
        return;
    }
    const auto pointer = ioctl.argument(sizeof(void *));
    umockdev_ioctl_data_set_ptr(pointer.get(), 0, m_urb.get());
    m_urb.reset();
    ioctl.complete(0);
}

} // namespace kelmoth
