#pragma once

#include "Platform/Simulated/SimulatedMouse.h"
#include "Tests/Hardware/MockTestbed.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelmoth {

class MockHidraw;
class MockUsbfs;

/// A report descriptor with one feature report of 90 bytes without an ID: the interface for commands.
std::vector<std::uint8_t> protocolDescriptor();

/// How the kernel shows one interface of a mouse.
struct MockInterface {
    std::vector<std::uint8_t> reportDescriptor = protocolDescriptor();
    bool hasDriver = true; ///< held by usbhid, and so with a hidraw node
};

/// What about a mouse is not as usual.
struct MockMouseOptions {
    std::optional<std::vector<MockInterface>> interfaces = std::nullopt; ///< four by default
    std::optional<std::string> hidID = std::nullopt;                     ///< HID_ID: bus, vendor, product
    std::optional<std::string> hidSerial = std::nullopt; ///< HID_UNIQ; the model's serial by default
    std::optional<std::string> product = std::nullopt;   ///< product string; empty: the mouse has none
    std::optional<std::string> udevModel = std::nullopt; ///< ID_MODEL_ENC; none by default
};

/// A simulated mouse at the kernel's side of hidraw and usbfs: nodes and sysfs entries of a four-interface
/// USB mouse, or of a Bluetooth one by its model's transport. The real transports are between it and the
/// program under test.
class MockMouse {
public:
    /// Not attached yet. `port` tells mice apart: each has its own, 1 to 9.
    MockMouse(std::shared_ptr<MockTestbed> testbed, std::shared_ptr<SimulatedMouse> mouse,
              MockMouseOptions options = {}, int port = 1);
    ~MockMouse();
    MockMouse(const MockMouse &) = delete;
    MockMouse &operator=(const MockMouse &) = delete;

    /// Shows nodes and sysfs entries and sends the events, as after plugging in.
    void attach();
    /// Takes them away: nodes first, then the events. What is open fails with ENODEV from now on.
    void detach() { remove(true); }
    /// As `detach`, without a word to the monitors.
    void vanish() { remove(false); }

    SimulatedMouse &mouse() const { return *m_mouse; }

    /// "/dev/hidraw…" of an interface.
    std::string hidrawNode(std::size_t interface) const;
    /// "/dev/bus/usb/001/…"
    std::string usbNode() const;

    /// Gives or takes the right to open the nodes, from users who are not root.
    void permit(bool isPermitted);
    /// The kernel says of the next report that goes well that a byte was not sent.
    void cutNextWrite();
    /// The kernel has given the node numbers to a device with another product ID.
    void reuseNodes(std::uint16_t productID);

    /// How often a driver was to be detached, which would take the pointer from the user.
    int driverDetaches() const;

private:
    void addUSB();
    void addBluetooth();
    void addHID(std::size_t interface, const std::string &parent);
    void addNode(const std::string &node, std::span<const std::uint8_t> contents,
                 MockTestbed::Handler handler);
    std::string addDevice(const std::string &subsystem, const std::string &name, const std::string &parent,
                          const MockTestbed::Pairs &attributes, const MockTestbed::Pairs &properties);
    void remove(bool isTold);

    const std::shared_ptr<MockTestbed> m_testbed;
    const std::shared_ptr<SimulatedMouse> m_mouse;
    const MockMouseOptions m_options;
    const int m_port;
    const std::vector<MockInterface> m_interfaces;
    std::shared_ptr<MockUsbfs> m_usbfs;
    std::vector<std::shared_ptr<MockHidraw>> m_hidraws;
    std::vector<std::string> m_hidrawPaths; ///< syspaths
    std::vector<std::string> m_devices;     ///< syspaths, parents first; empty while detached
    std::vector<std::string> m_nodes;       ///< in /dev
    int m_attach = 0; ///< counts attaches: the kernel gives each HID device a new instance number
};

} // namespace kelmoth
