#pragma once

#include "Platform/Simulated/SimulatedMouse.h"
#include "Testbed/MockHidraw.h"
#include "Testbed/MockTestbed.h"

#include <optional>

namespace kelmoth {

using ReportDescriptor = std::vector<std::uint8_t>;

/// Of an interface that takes commands: one feature report of 90 bytes without an ID.
inline const ReportDescriptor takesCommands{0x06, 0x00, 0xFF, 0x75, 0x08, 0x95, 0x5A, 0xB1, 0x01};

/// What about a mouse is not as usual.
struct MockMouseOptions {
    std::optional<std::vector<ReportDescriptor>> interfaces = std::nullopt; ///< four by default
    bool hasDriver = true; ///< usbhid holds the interfaces, and so they have hidraw nodes
    std::optional<std::string> hidID = std::nullopt;     ///< HID_ID: bus, vendor, product
    std::optional<std::string> hidSerial = std::nullopt; ///< HID_UNIQ; the model's serial by default
    std::optional<std::string> product = std::nullopt;   ///< product string
    std::string udevModel = {};                          ///< ID_MODEL_ENC; empty: none
};

/// A simulated mouse at the kernel's side of hidraw and usbfs: nodes and sysfs entries of a four-interface
/// USB mouse, or of a Bluetooth one by its model's transport. The real transports are between it and the
/// program under test.
class MockMouse {
public:
    /// Not attached yet. `port` tells mice apart: each has its own, 1 to 9.
    MockMouse(std::shared_ptr<MockTestbed> testbed, std::shared_ptr<SimulatedMouse> mouse,
              MockMouseOptions options = {}, int port = 1);
    ~MockMouse() { remove(false); }
    MockMouse(const MockMouse &) = delete;
    MockMouse &operator=(const MockMouse &) = delete;

    /// Shows nodes and sysfs entries and sends the events, as after plugging in.
    void attach();
    /// Takes them away: nodes first, then the events. What is open fails with ENODEV from now on.
    void detach() { remove(true); }
    /// As `detach`, without a word to the monitors.
    void vanish() { remove(false); }
    /// Sends an event of each of its devices, whatever has become of them. Any thread.
    void tell(const char *action) const;
    /// Gives or takes the right to open the nodes, from users who are not root.
    void permit(bool isPermitted);

    /// Whether the next program that reads an event is told that its queue was too short for them.
    static inline std::atomic<bool> areEventsLost = false;

    SimulatedMouse &mouse() const { return *m_mouse; }
    /// The kernel's side of an interface's hidraw node.
    MockHidraw &hidraw(std::size_t interface) const { return *m_hidraws.at(interface); }
    /// "/dev/hidraw…" of an interface.
    std::string hidrawNode(std::size_t interface) const
    {
        return "/dev/hidraw" + std::to_string(m_port) + std::to_string(interface);
    }
    /// "/dev/bus/usb/001/…"
    std::string usbNode() const { return "/dev/bus/usb/001/00" + std::to_string(m_port); }

private:
    void addUSB();
    void addHID(std::size_t interface, const std::string &parent);
    std::string addDevice(const char *subsystem, const std::string &name, const std::string &parent,
                          auto... lists);
    void remove(bool isTold);

    const std::shared_ptr<MockTestbed> m_testbed;
    const std::shared_ptr<SimulatedMouse> m_mouse;
    const MockMouseOptions m_options;
    const int m_port;
    std::vector<std::shared_ptr<MockHidraw>> m_hidraws;
    std::vector<std::string> m_devices; ///< syspaths, parents first; empty while detached
    std::vector<std::string> m_nodes;   ///< in /dev
    int m_attach = 0; ///< counts attaches: the kernel gives each HID device a new instance number
};

} // namespace kelmoth
