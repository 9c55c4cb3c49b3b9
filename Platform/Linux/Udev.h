#pragma once

#include <libudev.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmoth {

/// Releases one reference to an object of libudev.
struct UdevUnref {
    void operator()(udev *object) const { udev_unref(object); }
    void operator()(udev_device *object) const { udev_device_unref(object); }
    void operator()(udev_enumerate *object) const { udev_enumerate_unref(object); }
    void operator()(udev_monitor *object) const { udev_monitor_unref(object); }
};
template <class T> using UdevPtr = std::unique_ptr<T, UdevUnref>;

/// A device from udev and sysfs. Use it on the thread of its udev context.
class UdevDevice {
public:
    /// Takes over one reference; null stands for no device.
    explicit UdevDevice(udev_device *device) : m_device(device) {}

    explicit operator bool() const { return m_device != nullptr; }

    /// A udev property as raw bytes; none when it is missing or empty.
    std::optional<std::string> property(const char *key) const;
    /// A sysfs attribute as raw bytes; none when it is missing or empty.
    std::optional<std::string> attribute(const char *name) const;
    /// An attribute or property that is a hexadecimal number of at most eight digits.
    std::optional<std::int64_t> hexAttribute(const char *name) const;

    std::string syspath() const;
    /// "/dev/hidraw3"; none for a device without a node.
    std::optional<std::string> node() const;
    /// The event of a device from a monitor: "add", "remove" and others.
    std::string action() const;
    /// The kernel driver that holds the device; none when no driver does.
    std::optional<std::string> driver() const;
    /// The closest ancestor of a kind; null when there is none. `type` may be null.
    UdevDevice parent(const char *subsystem, const char *type) const;

    udev_device *get() const { return m_device.get(); }

private:
    UdevPtr<udev_device> m_device;
};

/// The devices of a subsystem, in the system's order; with `parent` only those below it.
std::vector<UdevDevice> devicesOfSubsystem(udev *context, const char *subsystem,
                                           const UdevDevice *parent = nullptr);

/// The USB devices (not interfaces) with these IDs, in the system's order; any product when absent.
std::vector<UdevDevice> usbDevices(udev *context, std::uint16_t vendorID,
                                   std::optional<std::uint16_t> productID);

/// Facts about a hidraw node's HID interface, found without opening the node.
struct HIDFacts {
    std::string syspath;    ///< of the hidraw device; differs between two attaches
    std::string hidSyspath; ///< of the HID interface
    std::string node;       ///< "/dev/hidraw3"
    std::int64_t vendorID = 0;
    std::int64_t productID = 0;
    std::string transport;              ///< "USB", "Bluetooth" or "Unknown"
    std::optional<std::string> product; ///< valid UTF-8
    std::optional<std::string> serial;  ///< valid UTF-8
    std::optional<int> interfaceNumber; ///< of a USB interface
};

/// The facts about a hidraw device; none when its parent is no HID device, or it has no node.
std::optional<HIDFacts> hidFacts(const UdevDevice &hidraw);

/// A USB device's product string as valid UTF-8; none when it has none.
std::optional<std::string> usbProduct(const UdevDevice &usbDevice);

/// Reads the report descriptor below the HID interface's sysfs path and returns the length of its longest
/// feature report; none as in `maxFeatureReportSize`, and when it cannot be read.
std::optional<std::int64_t> readMaxFeatureReportSize(const std::string &hidSyspath);

/// Decodes a udev property with a name ending in _ENC: "\x20" is one byte.
std::string decodedProperty(std::string_view encoded);

} // namespace kelmoth
