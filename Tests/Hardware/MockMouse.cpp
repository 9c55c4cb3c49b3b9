#include "Tests/Hardware/MockMouse.h"

#include "Tests/Hardware/MockHidraw.h"
#include "Tests/Hardware/MockUsbfs.h"

#include <QString>

#include <sys/ioctl.h>
#include <utility>

namespace kelmoth {

namespace {

std::vector<MockInterface> usualInterfaces(std::size_t protocolInterface)
{
    const MockInterface pointer{
        {0x05, 0x01, 0x09, 0x02, 0xA1, 0x01, 0x75, 0x08, 0x95, 0x04, 0x81, 0x02, 0xC0}};
    // A feature report of 15 bytes with an ID.
    const MockInterface other{
        {0x06, 0x00, 0xFF, 0x09, 0x01, 0xA1, 0x01, 0x85, 0x07, 0x75, 0x08, 0x95, 0x0F, 0xB1, 0x02, 0xC0}};
    std::vector interfaces{pointer, other, other, pointer};
    interfaces[protocolInterface] = MockInterface{};
    return interfaces;
}

std::string text(const char *format, auto... arguments)
{
    return QString::asprintf(format, arguments...).toStdString();
}

void handleHidraw(MockHidraw &hidraw, MockIoctl &ioctl)
{
    const auto argument = ioctl.argument(_IOC_SIZE(ioctl.request()));
    auto bytes = MockIoctl::bytes(argument.get());
    const int result = hidraw.ioctl(ioctl.request(), bytes);
    MockIoctl::write(argument.get(), bytes);
    ioctl.complete(result);
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

MockMouse::MockMouse(std::shared_ptr<MockTestbed> testbed, std::shared_ptr<SimulatedMouse> mouse,
                     MockMouseOptions options, int port)
    : m_testbed(std::move(testbed)),
      m_mouse(std::move(mouse)),
      m_options(std::move(options)),
      m_port(port),
      m_interfaces(m_options.interfaces.value_or(usualInterfaces(m_mouse->protocolInterface())))
{
}

MockMouse::~MockMouse()
{
    vanish();
}

std::string MockMouse::hidrawNode(std::size_t interface) const
{
    return "/dev/hidraw" + std::to_string(10 * m_port + static_cast<int>(interface));
}

std::string MockMouse::usbNode() const
{
    return text("/dev/bus/usb/001/%03d", m_port);
}

void MockMouse::attach()
{
    ++m_attach;
    m_mouse->replug();
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
                                  {"serial", model.serialNumber + "\n"}};
    const std::string product = m_options.product.value_or(model.productName);
    if (!product.empty()) {
        attributes.emplace_back("product", product + "\n");
    }
    MockTestbed::Pairs properties{{"DEVTYPE", "usb_device"}, {"DEVNAME", usbNode()}};
    if (m_options.udevModel) {
        properties.emplace_back("ID_MODEL_ENC", *m_options.udevModel);
    }
    const auto device = addDevice("usb", text("1-%d", m_port), "", attributes, properties);

    std::vector<bool> hasDriver;
    for (std::size_t i = 0; i < m_interfaces.size(); ++i) {
        hasDriver.push_back(m_interfaces[i].hasDriver);
        const auto interface =
            addDevice("usb", text("1-%d:1.%zu", m_port, i), device,
                      {{"bInterfaceNumber", text("%02zx\n", i)}}, {{"DEVTYPE", "usb_interface"}});
        if (m_interfaces[i].hasDriver) {
            m_testbed->setDriver(interface, "usbhid");
            addHID(i, interface);
        }
    }
    m_usbfs = std::make_shared<MockUsbfs>(m_mouse, hasDriver);
    addNode(usbNode(), m_usbfs->descriptors(), [usbfs = m_usbfs](MockIoctl &ioctl) { usbfs->handle(ioctl); });
}

void MockMouse::addBluetooth()
{
    // Below the adapter, a USB device of another maker.
    const MockTestbed::Pairs adapter{
        {"idVendor", "8087\n"}, {"idProduct", "0a2b\n"}, {"product", "Adapter\n"}};
    addHID(m_mouse->protocolInterface(),
           addDevice("usb", text("2-%d", m_port), "", adapter, {{"DEVTYPE", "usb_device"}}));
}

void MockMouse::addHID(std::size_t interface, const std::string &parent)
{
    const auto &model = m_mouse->model();
    const int bus = model.transport == "Bluetooth" ? 5 : 3;
    const int instance = 256 * m_attach + 16 * m_port + static_cast<int>(interface);
    const auto hid = addDevice(
        "hid", text("%04X:%04X:%04X.%04X", bus, model.vendorID, model.productID, instance), parent, {},
        {{"HID_ID", m_options.hidID.value_or(text("%04X:%08X:%08X", bus, model.vendorID, model.productID))},
         {"HID_NAME", "Maker " + m_options.product.value_or(model.productName)},
         {"HID_UNIQ", m_options.hidSerial.value_or(model.serialNumber)}});
    m_testbed->setBinaryAttribute(hid, "report_descriptor", m_interfaces[interface].reportDescriptor);
    m_testbed->setDriver(hid, "hid-generic");

    const std::string node = hidrawNode(interface);
    const std::string name = node.substr(sizeof "/dev/" - 1);
    m_hidrawPaths.push_back(addDevice("hidraw", name, hid, {}, {{"DEVNAME", node}}));
    m_hidraws.push_back(std::make_shared<MockHidraw>(m_mouse, static_cast<std::uint16_t>(interface)));
    addNode(node, {}, [hidraw = m_hidraws.back()](MockIoctl &ioctl) { handleHidraw(*hidraw, ioctl); });
}

void MockMouse::addNode(const std::string &node, std::span<const std::uint8_t> contents,
                        MockTestbed::Handler handler)
{
    m_testbed->addNode(node, contents, std::move(handler));
    m_nodes.push_back(node);
}

std::string MockMouse::addDevice(const std::string &subsystem, const std::string &name,
                                 const std::string &parent, const MockTestbed::Pairs &attributes,
                                 const MockTestbed::Pairs &properties)
{
    m_devices.push_back(m_testbed->addDevice(subsystem, name, parent, attributes, properties));
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
    for (const auto &syspath : std::exchange(m_hidrawPaths, {})) {
        if (isTold) {
            m_testbed->sendEvent(syspath, "remove");
        }
    }
    for (; !m_devices.empty(); m_devices.pop_back()) {
        m_testbed->removeDevice(m_devices.back());
    }
}

void MockMouse::permit(bool isPermitted)
{
    for (const auto &node : m_nodes) {
        m_testbed->setMode(node, isPermitted ? 0666 : 0);
    }
}

void MockMouse::cutNextWrite()
{
    m_hidraws.at(m_mouse->protocolInterface())->isNextWriteCut = true;
}

void MockMouse::reuseNodes(std::uint16_t productID)
{
    for (const auto &hidraw : m_hidraws) {
        hidraw->productID = productID;
    }
}

int MockMouse::driverDetaches() const
{
    return m_usbfs ? m_usbfs->driverDetaches() : 0;
}

} // namespace kelmoth
