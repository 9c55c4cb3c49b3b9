#include "Platform/Linux/LinuxUSB.h"

#include "Platform/Linux/LinuxUSBInterface.h"
#include "Platform/Linux/Udev.h"

#include <cerrno>
#include <string>
#include <utility>

namespace kelmoth {

namespace {

/// The hidraw node of one interface of the USB device at `syspath`; none when there is none.
std::shared_ptr<Hidraw> findHidraw(const std::string &syspath, std::uint16_t interfaceNumber,
                                   HidrawNodes &nodes)
{
    const UdevPtr<udev> context(udev_new());
    const UdevDevice device(udev_device_new_from_syspath(context.get(), syspath.c_str()));
    if (!device) {
        return nullptr;
    }
    for (const auto &hidraw : devicesOfSubsystem(context.get(), "hidraw", &device)) {
        const auto facts = hidFacts(hidraw);
        if (facts && facts->interfaceNumber == interfaceNumber) {
            return nodes.node(facts->syspath, facts->node,
                              {.vendorID = facts->vendorID, .productID = facts->productID});
        }
    }
    return nullptr;
}

class LinuxUSBDevice final : public USBDevice {
public:
    LinuxUSBDevice(const UdevDevice &device, std::shared_ptr<HidrawNodes> nodes,
                   std::shared_ptr<Sleeper> sleeper)
        : m_syspath(device.syspath()),
          m_node(device.node().value_or("")),
          m_nodes(std::move(nodes)),
          m_sleeper(std::move(sleeper))
    {
    }

    InterfaceResult createInterface() override
    {
        const UdevPtr<udev> context(udev_new());
        if (!UdevDevice(udev_device_new_from_syspath(context.get(), m_syspath.c_str()))) {
            return {.status = ENODEV, .interface = nullptr};
        }
        auto finder = [syspath = m_syspath, nodes = m_nodes](std::uint16_t interfaceNumber) {
            return findHidraw(syspath, interfaceNumber, *nodes);
        };
        return {.status = 0,
                .interface = std::make_unique<LinuxUSBInterface>(m_node, std::move(finder), m_sleeper)};
    }

private:
    const std::string m_syspath;
    const std::string m_node; ///< "/dev/bus/usb/001/004"
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
        matches.devices.push_back(std::make_shared<LinuxUSBDevice>(device, m_nodes, m_sleeper));
    }
    return matches;
}

} // namespace kelmoth
