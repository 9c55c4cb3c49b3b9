#include "Tests/Hardware/MockMouse.h"

#include "Tests/Hardware/MockUsbfs.h"

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <linux/hidraw.h>
#include <sys/ioctl.h>
#include <utility>

namespace kelmoth {

namespace {

constexpr int busUSB = 3;
constexpr int busBluetooth = 5;

[[gnu::format(printf, 1, 2)]] std::string text(const char *format, ...)
{
    std::array<char, 64> buffer{};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    return buffer.data();
}

std::vector<MockInterface> usualInterfaces(std::size_t protocolInterface)
{
    std::vector<MockInterface> interfaces{
        {pointerDescriptor()}, {smallFeatureDescriptor()}, {smallFeatureDescriptor()}, {pointerDescriptor()}};
    interfaces[protocolInterface].reportDescriptor = protocolDescriptor();
    return interfaces;
}

} // namespace

std::vector<std::uint8_t> protocolDescriptor()
{
    return {0x05, 0x01, 0x09, 0x02, 0xA1, 0x01,             // a mouse
            0x75, 0x08, 0x95, 0x08, 0x81, 0x02,             // 8 bytes of movement
            0x06, 0x00, 0xFF, 0x09, 0x02, 0x15, 0x00,       // vendor page
            0x25, 0x01, 0x75, 0x08, 0x95, 0x5A, 0xB1, 0x01, // 90 bytes of feature
            0xC0};
}

std::vector<std::uint8_t> pointerDescriptor()
{
    return {0x05, 0x01, 0x09, 0x02, 0xA1, 0x01, 0x75, 0x08, 0x95, 0x04, 0x81, 0x02, 0xC0};
}

std::vector<std::uint8_t> smallFeatureDescriptor()
{
    return {0x06, 0x00, 0xFF, 0x09, 0x01, 0xA1, 0x01, 0x85, 0x07, 0x75, 0x08, 0x95, 0x0F, 0xB1, 0x02, 0xC0};
}

MockMouse::MockMouse(std::shared_ptr<MockTestbed> testbed, std::shared_ptr<SimulatedMouse> mouse,
                     MockMouseOptions options, int port)
    : m_testbed(std::move(testbed)),
      m_mouse(std::move(mouse)),
      m_options(std::move(options)),
      m_port(port),
      m_interfaces(m_options.interfaces.value_or(usualInterfaces(m_mouse->protocolInterface()))),
      m_nodeProductID(m_mouse->model().productID)
{
}

MockMouse::~MockMouse()
{
    if (!m_isGone) {
        vanish();
    }
    for (const auto &node : m_nodes) {
        m_testbed->detachHandler(node);
    }
}

std::string MockMouse::hidrawNode(std::size_t interface) const
{
    return "/dev/hidraw" + std::to_string(10 * m_port + static_cast<int>(interface));
}

std::string MockMouse::usbNode() const
{
    return text("/dev/bus/usb/001/%03d", m_port);
}

std::string MockMouse::hidName() const
{
    return "Maker " + m_options.product.value_or(m_mouse->model().productName);
}

void MockMouse::attach()
{
    ++m_attach;
    for (const auto &node : std::exchange(m_nodes, {})) {
        m_testbed->detachHandler(node);
    }
    m_hidrawPaths.clear();
    m_mouse->replug();
    m_isGone = false;
    if (m_mouse->model().transport == "Bluetooth") {
        addBluetooth();
    } else {
        addUSB();
    }
    for (const auto &syspath : m_hidrawPaths) {
        m_testbed->sendEvent(syspath, "add");
    }
}

void MockMouse::addUSB()
{
    const auto &model = m_mouse->model();
    MockTestbed::Pairs attributes{{"idVendor", text("%04x\n", model.vendorID)},
                                  {"idProduct", text("%04x\n", model.productID)},
                                  {"busnum", "1\n"},
                                  {"devnum", text("%d\n", m_port)},
                                  {"manufacturer", "Maker\n"},
                                  {"serial", model.serialNumber + "\n"}};
    const std::string product = m_options.product.value_or(model.productName);
    if (!product.empty()) {
        attributes.emplace_back("product", product + "\n");
    }
    MockTestbed::Pairs properties{{"DEVTYPE", "usb_device"}, {"DEVNAME", usbNode()}};
    if (m_options.udevModel) {
        properties.emplace_back("ID_MODEL_ENC", *m_options.udevModel);
    }
    m_usbSyspath = addDevice("usb", text("1-%d", m_port), "", attributes, properties);

    std::vector<bool> hasDriver;
    for (std::size_t i = 0; i < m_interfaces.size(); ++i) {
        hasDriver.push_back(m_interfaces[i].hasDriver);
        const auto syspath =
            addDevice("usb", text("1-%d:1.%zu", m_port, i), m_usbSyspath,
                      {{"bInterfaceNumber", text("%02zx\n", i)}}, {{"DEVTYPE", "usb_interface"}});
        if (m_interfaces[i].hasDriver) {
            m_testbed->setDriver(syspath, "usbhid");
            addHID(i, syspath, busUSB);
        }
    }
    m_usbfs = std::make_shared<MockUsbfs>(m_mouse, hasDriver, m_port);
    m_testbed->addNode(usbNode(), m_usbfs->descriptors(),
                       [usbfs = m_usbfs](MockIoctl &ioctl) { usbfs->handle(ioctl); });
    m_nodes.push_back(usbNode());
}

void MockMouse::addBluetooth()
{
    // Below the adapter, a USB device of another maker.
    const auto adapter =
        addDevice("usb", text("2-%d", m_port), "",
                  {{"idVendor", "8087\n"}, {"idProduct", "0a2b\n"}, {"product", "Adapter\n"}},
                  {{"DEVTYPE", "usb_device"}});
    addHID(m_mouse->protocolInterface(), adapter, busBluetooth);
}

void MockMouse::addHID(std::size_t interface, const std::string &parent, int bus)
{
    const auto &model = m_mouse->model();
    const unsigned product = m_options.hidProductID.value_or(model.productID);
    const std::string id = m_options.hidID.value_or(text("%04X:%08X:%08X", bus, model.vendorID, product));
    const std::string serial = m_options.hidSerial.value_or(model.serialNumber);
    const auto instance = 256 * m_attach + 16 * m_port + static_cast<int>(interface);
    const auto hid = addDevice(
        "hid", text("%04X:%04X:%04X.%04X", bus, model.vendorID, model.productID, instance), parent, {},
        {{"HID_ID", id}, {"HID_NAME", hidName()}, {"HID_UNIQ", serial}, {"DRIVER", "hid-generic"}});
    m_testbed->setBinaryAttribute(hid, "report_descriptor", m_interfaces[interface].reportDescriptor);
    m_testbed->setDriver(hid, "hid-generic");
    const std::string node = hidrawNode(interface);
    m_hidrawPaths.push_back(
        addDevice("hidraw", node.substr(sizeof "/dev/" - 1), hid, {}, {{"DEVNAME", node}}));
    m_testbed->addNode(node, {}, [this, interface](MockIoctl &ioctl) { handleHidraw(interface, ioctl); });
    m_nodes.push_back(node);
}

void MockMouse::detach()
{
    takeNodesAway();
    for (const auto &syspath : m_hidrawPaths) {
        m_testbed->sendEvent(syspath, "remove");
    }
    removeDevices();
}

void MockMouse::vanish()
{
    takeNodesAway();
    removeDevices();
}

void MockMouse::takeNodesAway()
{
    m_mouse->unplug();
    m_isGone = true;
    for (const auto &node : m_nodes) {
        m_testbed->removeNode(node);
    }
}

void MockMouse::removeDevices()
{
    while (!m_devices.empty()) {
        m_testbed->removeDevice(m_devices.back());
        m_devices.pop_back();
    }
}

std::string MockMouse::addDevice(const std::string &subsystem, const std::string &name,
                                 const std::string &parent, const MockTestbed::Pairs &attributes,
                                 const MockTestbed::Pairs &properties)
{
    m_devices.push_back(m_testbed->addDevice(subsystem, name, parent, attributes, properties));
    return m_devices.back();
}

void MockMouse::handleHidraw(std::size_t interface, MockIoctl &ioctl)
{
    const auto &model = m_mouse->model();
    const auto size = _IOC_SIZE(ioctl.request());
    const auto is = [&](auto request) { return ioctl.request() == static_cast<unsigned long>(request); };
    if (m_isGone) {
        ioctl.fail(ENODEV);
    } else if (is(HIDIOCGRAWINFO)) {
        const ::hidraw_devinfo info{.bustype = busUSB,
                                    .vendor = static_cast<__s16>(model.vendorID),
                                    .product = static_cast<__s16>(m_nodeProductID.load())};
        const auto *const bytes = reinterpret_cast<const std::uint8_t *>(&info);
        MockIoctl::write(ioctl.argument(sizeof info).get(), {bytes, sizeof info});
        ioctl.succeed();
    } else if (is(HIDIOCSFEATURE(size)) && size > 1) {
        // The first byte is the report ID; 0 is not sent.
        const auto report = MockIoctl::bytes(ioctl.argument(size).get());
        const int status = report[0] != 0 ? EINVAL
                                          : m_mouse->setReport(static_cast<std::uint16_t>(interface),
                                                               std::span(report).subspan(1));
        if (status != 0) {
            ioctl.fail(status);
        } else {
            ioctl.succeed(static_cast<long>(size) - (m_shortWrite.exchange(false) ? 1 : 0));
        }
    } else if (is(HIDIOCGFEATURE(size)) && size > 1) {
        const auto argument = ioctl.argument(size);
        std::vector<std::uint8_t> report(size);
        const auto read =
            m_mouse->getReport(static_cast<std::uint16_t>(interface), std::span(report).subspan(1));
        if (read.status != 0) {
            ioctl.fail(read.status);
        } else {
            MockIoctl::write(argument.get(), std::span(report).first(read.length + 1));
            ioctl.succeed(static_cast<long>(read.length) + 1);
        }
    } else {
        ioctl.fail(EINVAL);
    }
}

void MockMouse::permit(bool isPermitted)
{
    for (const auto &node : m_nodes) {
        m_testbed->setMode(node, isPermitted ? 0666 : 0);
    }
}

int MockMouse::driverDetaches() const
{
    return m_usbfs ? m_usbfs->driverDetaches() : 0;
}

int MockMouse::claims() const
{
    return m_usbfs ? m_usbfs->claims() : 0;
}

} // namespace kelmoth
