#include "Testbed/MockMouse.h"

#include <QString>
#include <gtest/gtest.h>

#include <chrono>
#include <dlfcn.h>
#include <filesystem>
#include <linux/usbdevice_fs.h>
#include <sys/socket.h>
#include <thread>

/// The mock of udev sends through this, and gives up when a program that listens has not read the last ten
/// events yet. The kernel's own queue is longer: wait instead.
extern "C" ssize_t sendmsg(int fd, const msghdr *message, int flags)
{
    using namespace std::chrono;
    static auto *const send = reinterpret_cast<decltype(&sendmsg)>(::dlsym(RTLD_NEXT, "sendmsg"));
    ssize_t sent = send(fd, message, flags);
    for (int tries = 0; sent < 0 && errno == EAGAIN && tries < 5000; ++tries) {
        std::this_thread::sleep_for(1ms); // a program that listens has events to read
        sent = send(fd, message, flags);
    }
    return sent;
}

/// A program that listens reads its events through this.
extern "C" ssize_t recvmsg(int fd, msghdr *message, int flags)
{
    static auto *const receive = reinterpret_cast<decltype(&recvmsg)>(::dlsym(RTLD_NEXT, "recvmsg"));
    if (kelmoth::MockMouse::areEventsLost.exchange(false)) {
        errno = ENOBUFS;
        return -1;
    }
    return receive(fd, message, flags);
}

namespace kelmoth {

namespace {

std::string text(const char *format, auto... arguments)
{
    return QString::asprintf(format, arguments...).toStdString();
}

/// The `size` bytes behind the pointer at `offset` of an ioctl's data; none when the program has ended in the
/// middle of the ioctl.
GObjectPtr<UMockdevIoctlData> pointee(UMockdevIoctlData *data, std::size_t offset, std::size_t size)
{
    return GObjectPtr<UMockdevIoctlData>(umockdev_ioctl_data_resolve(data, offset, size, nullptr));
}

/// Puts bytes into the program's memory.
void update(UMockdevIoctlData *data, std::span<std::uint8_t> bytes, std::size_t offset = 0)
{
    umockdev_ioctl_data_update(data, offset, bytes.data(), static_cast<gint>(bytes.size()));
}

std::vector<std::uint8_t> bytesOf(const UMockdevIoctlData &data)
{
    return {data.data, data.data + data.data_len};
}

int performOnHidraw(MockHidraw &hidraw, UMockdevIoctlClient *client)
{
    const auto request = umockdev_ioctl_client_get_request(client);
    const auto argument = pointee(umockdev_ioctl_client_get_arg(client), 0, _IOC_SIZE(request));
    if (!argument) {
        return -EFAULT;
    }
    auto bytes = bytesOf(*argument);
    const int result = hidraw.ioctl(request, bytes);
    update(argument.get(), bytes);
    return result;
}

/// What the kernel does on a mouse's node in /dev/bus/usb, as far as libusb asks for it.
struct MockUsbfs {
    const std::shared_ptr<SimulatedMouse> mouse;
    const bool hasDriver;
    GObjectPtr<UMockdevIoctlData> urb = {}; ///< performed, and not reaped yet

    int ioctl(UMockdevIoctlClient *client)
    {
        auto *const argument = umockdev_ioctl_client_get_arg(client);
        switch (umockdev_ioctl_client_get_request(client)) {
        case USBDEVFS_CLAIMINTERFACE:
            return hasDriver ? -EBUSY : 0;
        case USBDEVFS_SUBMITURB:
            return mouse->isAttached() ? submit(argument) : -ENODEV;
        case USBDEVFS_REAPURB:
        case USBDEVFS_REAPURBNDELAY:
            return reap(argument);
        case USBDEVFS_IOCTL: // to an interface's driver: libusb detaches and attaches drivers with it
        case USBDEVFS_DISCONNECT:
        case USBDEVFS_DISCONNECT_CLAIM:
            ADD_FAILURE() << "a driver is detached, which takes the pointer from the user";
            return 0;
        case USBDEVFS_CONNECTINFO:
        case USBDEVFS_RELEASEINTERFACE:
            return 0;
        default:
            return -ENOTTY;
        }
    }

    int submit(UMockdevIoctlData *argument)
    {
        urb = pointee(argument, 0, sizeof(::usbdevfs_urb));
        if (!urb) {
            return -EFAULT;
        }
        ::usbdevfs_urb fields;
        std::memcpy(&fields, urb->data, sizeof fields);
        const auto buffer = pointee(urb.get(), offsetof(::usbdevfs_urb, buffer),
                                    static_cast<std::size_t>(fields.buffer_length));
        if (!buffer) {
            return -EFAULT;
        }
        auto bytes = bytesOf(*buffer);
        const int moved = perform(bytes);
        update(buffer.get(), bytes);
        const auto store = [&](std::size_t offset, int value) {
            update(urb.get(), {reinterpret_cast<std::uint8_t *>(&value), sizeof value}, offset);
        };
        store(offsetof(::usbdevfs_urb, status), std::min(moved, 0));
        store(offsetof(::usbdevfs_urb, actual_length), std::max(moved, 0));
        return 0;
    }

    /// Also when the device has gone since.
    int reap(UMockdevIoctlData *argument)
    {
        if (!urb) {
            return mouse->isAttached() ? -EAGAIN : -ENODEV;
        }
        if (const auto place = pointee(argument, 0, sizeof(void *))) {
            umockdev_ioctl_data_set_ptr(place.get(), 0, urb.get());
        }
        urb.reset();
        return 0;
    }

    /// The control transfer in a buffer of setup packet and data. How many bytes of data moved, or a
    /// negative errno.
    int perform(std::span<std::uint8_t> buffer) const
    {
        constexpr std::array<std::uint8_t, 4> setReport{0x21, 0x09, 0x00, 0x03};
        constexpr std::array<std::uint8_t, 4> getReport{0xA1, 0x01, 0x00, 0x03};
        const auto data = buffer.subspan(8);
        const bool isSet = std::ranges::equal(buffer.first(4), setReport);
        if (!isSet && !std::ranges::equal(buffer.first(4), getReport)) {
            return -EPIPE;
        }
        const auto moved = isSet ? FeatureReportRead{mouse->setReport(buffer[4], data), data.size()}
                                 : mouse->getReport(buffer[4], data);
        return moved.status != 0 ? -moved.status : static_cast<int>(moved.length);
    }
};

} // namespace

MockMouse::MockMouse(std::shared_ptr<MockTestbed> testbed, std::shared_ptr<SimulatedMouse> mouse,
                     MockMouseOptions options, int port)
    : m_testbed(std::move(testbed)), m_mouse(std::move(mouse)), m_options(std::move(options)), m_port(port)
{
}

void MockMouse::attach()
{
    ++m_attach;
    m_mouse->replug();
    if (m_mouse->model().transport == "Bluetooth") {
        // Below the adapter, a USB device of another maker.
        addHID(0, addDevice("usb", text("2-%d", m_port), "", "idVendor", "8087\n", "product", "Adapter\n",
                            nullptr, "DEVTYPE", "usb_device", nullptr));
    } else {
        addUSB();
    }
    tell("add");
}

void MockMouse::tell(const char *action) const
{
    for (const auto &syspath : m_devices) {
        umockdev_testbed_uevent(m_testbed->get(), syspath.c_str(), action);
    }
}

void MockMouse::addUSB()
{
    const auto &model = m_mouse->model();
    const auto vendor = text("%04x\n", model.vendorID);
    const auto productID = text("%04x\n", model.productID);
    const auto product = m_options.product.value_or(model.productName);
    const auto device = addDevice("usb", text("1-%d", m_port), "", "idVendor", vendor.c_str(), "idProduct",
                                  productID.c_str(), "serial", model.serialNumber.c_str(), "product",
                                  product.c_str(), nullptr, "DEVTYPE", "usb_device", "DEVNAME",
                                  usbNode().c_str(), "ID_MODEL_ENC", m_options.udevModel.c_str(), nullptr);
    const std::size_t count = m_options.interfaces ? m_options.interfaces->size() : 4;
    for (std::size_t i = 0; i < count; ++i) {
        const auto interface =
            addDevice("usb", text("1-%d:1.%zu", m_port, i), device, "bInterfaceNumber",
                      text("%02zx\n", i).c_str(), nullptr, "DEVTYPE", "usb_interface", nullptr);
        if (m_options.hasDriver) {
            umockdev_testbed_set_attribute_link(m_testbed->get(), interface.c_str(), "driver",
                                                "/sys/bus/usb/drivers/usbhid");
            addHID(i, interface);
        }
    }
    const auto usbfs = std::shared_ptr<MockUsbfs>(new MockUsbfs{m_mouse, m_options.hasDriver});
    // A device and its configuration with one interface, which is all that libusb looks for.
    m_nodes.push_back(usbNode());
    m_testbed->addNode(usbNode(), {18, 1, 0,  2, 0, 0, 0, 64,   0,   0, 0, 0, 0, 2, 1, 2, 3, 1,
                                   9,  2, 18, 0, 1, 1, 0, 0xA0, 250, 9, 4, 0, 0, 0, 3, 0, 0, 0},
                       [usbfs](UMockdevIoctlClient *client) { return usbfs->ioctl(client); });
}

void MockMouse::addHID(std::size_t interface, const std::string &parent)
{
    const auto &model = m_mouse->model();
    const int bus = model.transport == "Bluetooth" ? 5 : 3;
    const auto id = text("%04X:%08X:%08X", bus, model.vendorID, model.productID);
    const auto name = "Maker " + m_options.product.value_or(model.productName);
    const auto hid =
        addDevice("hid", text("0003:1532:%04X.%d%d%zu", model.productID, m_attach, m_port, interface), parent,
                  nullptr, "HID_ID", m_options.hidID.value_or(id).c_str(), "HID_NAME", name.c_str(),
                  "HID_UNIQ", m_options.hidSerial.value_or(model.serialNumber).c_str(), nullptr);
    // The usual other interfaces have a feature report of 15 bytes with an ID.
    const ReportDescriptor other{0x06, 0x00, 0xFF, 0x85, 0x07, 0x75, 0x08, 0x95, 0x0F, 0xB1, 0x02};
    const auto usual = interface == m_mouse->protocolInterface() ? takesCommands : other;
    auto descriptor = m_options.interfaces ? m_options.interfaces->at(interface) : usual;
    umockdev_testbed_set_attribute_binary(m_testbed->get(), hid.c_str(), "report_descriptor",
                                          descriptor.data(), static_cast<gint>(descriptor.size()));
    const auto node = hidrawNode(interface);
    addDevice("hidraw", node.substr(sizeof "/dev/" - 1), hid, nullptr, "DEVNAME", node.c_str(), nullptr);
    const std::shared_ptr<MockHidraw> hidraw(new MockHidraw{m_mouse, static_cast<std::uint16_t>(interface)});
    m_hidraws.push_back(hidraw);
    m_nodes.push_back(node);
    m_testbed->addNode(node, {},
                       [hidraw](UMockdevIoctlClient *client) { return performOnHidraw(*hidraw, client); });
}

/// Adds a device without an event; gives its path in /sys. Two lists of C strings, each a name and its value
/// in turn and nullptr at the end: attributes and properties.
std::string MockMouse::addDevice(const char *subsystem, const std::string &name, const std::string &parent,
                                 auto... lists)
{
    const char *const above = parent.empty() ? nullptr : parent.c_str();
    m_devices.push_back(MockTestbed::take(
        umockdev_testbed_add_device(m_testbed->get(), subsystem, name.c_str(), above, lists...)));
    return m_devices.back();
}

void MockMouse::remove(bool isTold)
{
    if (m_devices.empty()) {
        return;
    }
    m_mouse->unplug();
    for (const auto &hidraw : std::exchange(m_hidraws, {})) {
        hidraw->isGone = true;
    }
    for (const auto &node : std::exchange(m_nodes, {})) {
        m_testbed->removeNode(node);
    }
    for (; !m_devices.empty(); m_devices.pop_back()) {
        if (isTold) {
            umockdev_testbed_uevent(m_testbed->get(), m_devices.back().c_str(), "remove");
        }
        umockdev_testbed_remove_device(m_testbed->get(), m_devices.back().c_str());
    }
}

void MockMouse::permit(bool isPermitted)
{
    for (const auto &node : m_nodes) {
        std::filesystem::permissions(m_testbed->path(node), std::filesystem::perms(isPermitted ? 0666 : 0));
    }
}

} // namespace kelmoth
