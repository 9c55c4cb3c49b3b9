#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmoth {

/// One interface of a USB device, as the kernel shows it.
struct USBInterfaceFact {
    int number = 0;                    ///< bInterfaceNumber
    std::optional<std::string> driver; ///< kernel driver that holds it; none when no driver does
    std::optional<std::string> node;   ///< its hidraw node, "/dev/hidraw3"; none when it has none
};

/// A USB device of the maker of the mice.
struct USBDeviceFact {
    std::string node; ///< "/dev/bus/usb/001/004"; empty when it has none
    std::uint16_t vendorID = 0;
    std::uint16_t productID = 0;
    std::optional<std::string> name; ///< valid UTF-8; may hold control characters
    int access = 0;                  ///< 0 when this process can open the node for writing, else errno
    std::vector<USBInterfaceFact> interfaces; ///< by number
};

/// A hidraw node of the mice's maker.
struct HIDNodeFact {
    std::string node;                  ///< "/dev/hidraw3"
    std::int64_t vendorID = 0;         ///< as the kernel has it: may exceed 16 bits
    std::int64_t productID = 0;        ///< as the kernel has it: may exceed 16 bits
    std::optional<std::string> name;   ///< valid UTF-8; may hold control characters
    std::string transport;             ///< "USB", "Bluetooth" or "Unknown"
    std::optional<int> interface;      ///< bInterfaceNumber; none without a USB interface
    std::optional<std::string> driver; ///< kernel driver that holds the HID interface
    int access = 0;                    ///< 0 when this process can open the node for writing, else errno
    /// Longest feature report in bytes; none when it has none or its report descriptor is unusable. The
    /// interface that takes the mouse's commands has at least 90.
    std::optional<std::int64_t> maxFeatureReportSize;
    /// Whether it is the interface that configures a supported mouse, regardless of access.
    bool takesCommands = false;
};

/// A problem that keeps this user from configuring a mouse: at most one per mouse, and one for the rules.
struct DoctorProblem {
    enum class Kind {
        noDevice,           ///< no USB or HID device of the maker is attached
        noDriver,           ///< the mouse's interfaces have no driver
        noHIDNode,          ///< its interfaces have no hidraw node
        noCommandInterface, ///< none of its interfaces takes commands
        noAccess,           ///< its node cannot be opened: no permission
        nodeFailed,         ///< its node cannot be opened for another reason
        rulesMissing,       ///< a node is refused, and the udev rules are not installed
        rulesMasked,        ///< a node is refused, and an empty file masks the udev rules
        bluetooth,          ///< attached over Bluetooth: shown, but not configurable
        otherVendor,        ///< has the vendor ID that is never configured
        unsupported,        ///< a model of the maker that is not supported
    };
    Kind kind = Kind::noDevice;
    std::string what;   ///< one English line that names the device or node; may hold text from hardware
    std::string remedy; ///< one English line: what the user can do; a command where one does it
};

/// The machine-readable name of a kind: "no-access".
std::string_view nameOf(DoctorProblem::Kind kind);

/// The access to a node in words: "can be opened", "no permission", or the system's error text.
std::string accessText(int access);

/// What to examine.
struct DoctorScope {
    std::vector<std::uint16_t> supported; ///< product IDs of the mice that can be configured
    std::optional<std::uint16_t> product =
        std::nullopt; ///< only the mice with this product ID; all when absent
};

/// What `examine` saw.
struct Examination {
    std::vector<USBDeviceFact> usbDevices;
    std::vector<HIDNodeFact> hidNodes;    ///< by path
    std::optional<std::string> rulesFile; ///< path of the udev rules; none when there is no such file
    bool areRulesMasked = false;          ///< the file is empty, or a link to /dev/null
    std::vector<DoctorProblem> problems;  ///< empty: the mouse can be configured
    int landlockVersion = 0;              ///< Landlock ABI version; 0: unavailable

    /// Whether there is a mouse that can be configured now.
    bool canConfigure() const;

    /// Whether there is a problem of this kind.
    bool has(DoctorProblem::Kind kind) const;
};

/// Where udev looks for rules, in order of precedence.
std::vector<std::string> defaultRulesDirectories();

/// One English line on how to get permission to open a mouse, a command where one suffices. It depends on
/// whether one of these directories has the udev rules.
std::string permissionRemedy(const std::vector<std::string> &rulesDirectories = defaultRulesDirectories());

/// Examines every USB device and hidraw node of the maker, this process's access to them, and the udev rules
/// in `rulesDirectories`. Opens each node once and closes it again; sends nothing to a mouse. Blocks for some
/// milliseconds; any thread.
Examination examine(const DoctorScope &scope,
                    const std::vector<std::string> &rulesDirectories = defaultRulesDirectories());

} // namespace kelmoth
