#include "Platform/Linux/LinuxUSB.h"

#include "Platform/Linux/ExchangeLock.h"
#include "Platform/Linux/Udev.h"
#include "Platform/Linux/UsbfsInterface.h"

#include <cerrno>
#include <utility>

namespace kelmoth {

namespace {

// HID class requests for feature report 0, which is what a hidraw node can carry.
constexpr std::uint8_t setReportType = 0x21;
constexpr std::uint8_t setReport = 0x09;
constexpr std::uint8_t getReportType = 0xA1;
constexpr std::uint8_t getReport = 0x01;
constexpr std::uint16_t featureReport0 = 0x0300;

/// What is needed to find one attached USB device again.
struct USBLocation {
    std::string syspath;
    std::string node; ///< "/dev/bus/usb/001/004"; empty when the system shows none
};

/// A control request to a HID interface, by way of its hidraw node.
int requestThrough(Hidraw &node, const USBControlRequest &request)
{
    const auto is = [&](std::uint8_t type, std::uint8_t code) {
        return request.bmRequestType == type && request.bRequest == code && request.wValue == featureReport0;
    };
    if (is(setReportType, setReport)) {
        return node.setFeatureReport(request.data);
    }
    if (is(getReportType, getReport)) {
        const auto read = node.getFeatureReport(request.data);
        if (read.status != 0) {
            return read.status;
        }
        return read.length == request.data.size() ? 0 : EIO;
    }
    return ENOTSUP;
}

class LinuxUSBDeviceInterface final : public USBDeviceInterface {
public:
    LinuxUSBDeviceInterface(USBLocation location, std::shared_ptr<HidrawNodes> nodes,
                            std::shared_ptr<Sleeper> sleeper)
        : m_location(std::move(location)), m_nodes(std::move(nodes)), m_sleeper(std::move(sleeper))
    {
    }

    int open(std::uint16_t interfaceNumber) override
    {
        close();
        m_interfaceNumber = interfaceNumber;
        auto claim = UsbfsInterface::claim(m_location.node, interfaceNumber);
        m_claimed = std::move(claim.interface);
        return claim.status;
    }

    void close() override
    {
        m_claimed.reset();
        m_hidraw.reset();
    }

    int deviceRequest(const USBControlRequest &request) override
    {
        if (m_claimed && m_claimed->number() == request.wIndex) {
            return m_claimed->controlTransfer(request);
        }
        if (request.wIndex != m_interfaceNumber) {
            return ENOTSUP;
        }
        const auto node = hidraw();
        return node ? requestThrough(*node, request) : ENXIO;
    }

    int beginExchange() override
    {
        if (m_claimed) {
            return takeExchange(m_claimed->fileDescriptor(), *m_sleeper);
        }
        m_held = hidraw();
        return m_held ? m_held->beginExchange() : ENXIO;
    }

    void endExchange() override
    {
        if (m_held) {
            m_held->endExchange();
            m_held.reset();
        } else if (m_claimed) {
            releaseExchange(m_claimed->fileDescriptor());
        }
    }

private:
    /// The node of the opened interface; none while it has none. Kept until it stops working.
    std::shared_ptr<Hidraw> hidraw()
    {
        if (!m_hidraw || m_hidraw->hasFailed()) {
            m_hidraw = findHidraw();
        }
        return m_hidraw;
    }

    std::shared_ptr<Hidraw> findHidraw() const
    {
        const UdevPtr<udev> context(udev_new());
        const UdevDevice device(udev_device_new_from_syspath(context.get(), m_location.syspath.c_str()));
        if (!device) {
            return nullptr;
        }
        for (const auto &hidraw : devicesOfSubsystem(context.get(), "hidraw", &device)) {
            const auto facts = hidFacts(hidraw);
            if (facts && facts->interfaceNumber == m_interfaceNumber) {
                return m_nodes->node(facts->syspath, facts->node,
                                     {.vendorID = facts->vendorID, .productID = facts->productID});
            }
        }
        return nullptr;
    }

    const USBLocation m_location;
    const std::shared_ptr<HidrawNodes> m_nodes;
    const std::shared_ptr<Sleeper> m_sleeper;
    std::uint16_t m_interfaceNumber = 0;
    std::unique_ptr<UsbfsInterface> m_claimed; ///< while libusb holds the interface
    std::shared_ptr<Hidraw> m_hidraw;
    std::shared_ptr<Hidraw> m_held; ///< within an exchange: the node that it holds
};

class LinuxUSBDevice final : public USBDevice {
public:
    LinuxUSBDevice(USBLocation location, std::shared_ptr<HidrawNodes> nodes, std::shared_ptr<Sleeper> sleeper)
        : m_location(std::move(location)), m_nodes(std::move(nodes)), m_sleeper(std::move(sleeper))
    {
    }

    InterfaceResult createInterface() override
    {
        const UdevPtr<udev> context(udev_new());
        if (!UdevDevice(udev_device_new_from_syspath(context.get(), m_location.syspath.c_str()))) {
            return {.status = ENODEV, .interface = nullptr};
        }
        return {.status = 0,
                .interface = std::make_unique<LinuxUSBDeviceInterface>(m_location, m_nodes, m_sleeper)};
    }

private:
    const USBLocation m_location;
    const std::shared_ptr<HidrawNodes> m_nodes;
    const std::shared_ptr<Sleeper> m_sleeper;
};

} // namespace

LinuxUSBService::LinuxUSBService(std::shared_ptr<HidrawNodes> nodes, std::shared_ptr<Sleeper> sleeper)
    : m_nodes(std::move(nodes)), m_sleeper(std::move(sleeper))
{
}

USBService::Matches LinuxUSBService::matchingDevices(std::uint16_t vendorID, std::uint16_t productID)
{
    const UdevPtr<udev> context(udev_new());
    if (!context) {
        return {.status = ENOMEM, .devices = {}};
    }
    Matches matches;
    for (const auto &device : usbDevices(context.get(), vendorID, productID)) {
        const USBLocation location{device.syspath(), device.node().value_or("")};
        matches.devices.push_back(std::make_shared<LinuxUSBDevice>(location, m_nodes, m_sleeper));
    }
    return matches;
}

} // namespace kelmoth
