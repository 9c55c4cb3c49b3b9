#pragma once

#include "Platform/Simulated/SimulatedMouse.h"
#include "Tests/Hardware/MockTestbed.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelmoth {

class MockUsbfs;

/// How the kernel shows one interface of a mouse.
struct MockInterface {
    std::vector<std::uint8_t> reportDescriptor = {};
    bool hasDriver = true; ///< held by usbhid, and so with a hidraw node
};

/// What about a mouse is not as usual.
struct MockMouseOptions {
    std::optional<std::vector<MockInterface>> interfaces = std::nullopt; ///< four by default
    std::optional<std::uint32_t> hidProductID =
        std::nullopt;                                    ///< product in HID_ID when it is not the model's
    std::optional<std::string> hidID = std::nullopt;     ///< the whole of HID_ID
    std::optional<std::string> product = std::nullopt;   ///< product string; empty: the mouse has none
    std::optional<std::string> hidSerial = std::nullopt; ///< HID_UNIQ when it is not the model's serial
    std::optional<std::string> udevModel = std::nullopt; ///< ID_MODEL_ENC; none by default
};

/// A report descriptor with one feature report of 90 bytes without an ID: the interface for commands.
std::vector<std::uint8_t> protocolDescriptor();
/// A report descriptor of a plain boot mouse, without a feature report.
std::vector<std::uint8_t> pointerDescriptor();
/// A report descriptor with a feature report of 15 bytes and an ID.
std::vector<std::uint8_t> smallFeatureDescriptor();

/// A simulated mouse at the kernel's side of hidraw and usbfs: nodes and sysfs entries of a four-interface
/// USB mouse, or of a Bluetooth one by its model's transport. The real transports are between it and the
/// program under test.
class MockMouse {
public:
    /// Not attached yet. `port` tells mice apart: each has its own, 1 to 9.
    MockMouse(std::shared_ptr<MockTestbed> testbed, std::shared_ptr<SimulatedMouse> mouse,
              MockMouseOptions options = {}, int port = 1);
    ~MockMouse();

    /// Shows nodes and sysfs entries and sends the events, as after plugging in.
    void attach();
    /// Takes them away: nodes first, then the events. What is open fails with ENODEV from now on.
    void detach();
    /// As `detach`, without a word to the monitors.
    void vanish();

    SimulatedMouse &mouse() const { return *m_mouse; }

    /// "/dev/hidraw…" of an interface.
    std::string hidrawNode(std::size_t interface) const;
    /// "/dev/bus/usb/001/…"
    std::string usbNode() const;
    /// "/sys/devices/…" of the USB device.
    const std::string &usbSyspath() const { return m_usbSyspath; }

    /// Gives or takes the right to open the nodes, from users who are not root.
    void permit(bool isPermitted);
    /// The kernel says of the next report that goes well that a byte was not sent.
    void shortenNextWrite() { m_shortWrite = true; }
    /// The kernel gives the interfaces' node numbers to a device with another product ID.
    void reuseNodes(std::uint16_t productID) { m_nodeProductID = productID; }

    /// ioctls that would take the pointer from the user: there must be none.
    int driverDetaches() const;
    /// Interface claims that were asked for.
    int claims() const;

private:
    void addUSB();
    void addBluetooth();
    void addHID(std::size_t interface, const std::string &parent, int bus);
    void handleHidraw(std::size_t interface, MockIoctl &ioctl);
    std::string hidName() const;
    std::string addDevice(const std::string &subsystem, const std::string &name, const std::string &parent,
                          const MockTestbed::Pairs &attributes, const MockTestbed::Pairs &properties);
    void takeNodesAway();
    void removeDevices();

    const std::shared_ptr<MockTestbed> m_testbed;
    const std::shared_ptr<SimulatedMouse> m_mouse;
    const MockMouseOptions m_options;
    const int m_port;
    std::vector<MockInterface> m_interfaces;
    std::shared_ptr<MockUsbfs> m_usbfs;
    std::string m_usbSyspath;
    std::vector<std::string> m_devices;     ///< syspaths, parents first
    std::vector<std::string> m_hidrawPaths; ///< syspaths
    std::vector<std::string> m_nodes;       ///< in /dev
    /// Counts attaches: the kernel gives each HID device a new instance number.
    int m_attach = 0;
    std::atomic<bool> m_isGone = true;
    std::atomic<bool> m_shortWrite = false;
    std::atomic<std::uint16_t> m_nodeProductID;
};

} // namespace kelmoth
