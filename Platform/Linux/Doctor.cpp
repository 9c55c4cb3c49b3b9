#include "Platform/Linux/Doctor.h"

#include "Platform/FileDescriptor.h"
#include "Platform/Linux/Confinement.h"
#include "Platform/Linux/Udev.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace kelmoth {

namespace {

using Kind = DoctorProblem::Kind;

constexpr std::array<std::uint16_t, 2> makerVendorIDs{0x1532, 0x068E};
constexpr std::string_view rulesName = "70-kelmoth.rules";

/// A mouse takes commands by a feature report of this size or more.
constexpr std::int64_t commandSize = 90;

/// 0 when this process can open the node for writing, else errno.
int access(const std::string &node)
{
    const FileDescriptor file(::open(node.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK));
    return file ? 0 : errno;
}

bool isRefusal(int status)
{
    return status == EACCES || status == EPERM;
}

std::uint16_t usbID(const UdevDevice &device, const char *attribute)
{
    return static_cast<std::uint16_t>(device.hexAttribute(attribute).value_or(0));
}

std::vector<HIDNodeFact> examineHIDNodes(udev *context)
{
    std::vector<HIDNodeFact> nodes;
    for (const auto &hidraw : devicesOfSubsystem(context, "hidraw")) {
        auto facts = hidFacts(hidraw);
        if (!facts || std::ranges::find(makerVendorIDs, facts->vendorID) == makerVendorIDs.end()) {
            continue;
        }
        nodes.push_back({.node = facts->node,
                         .vendorID = facts->vendorID,
                         .productID = facts->productID,
                         .name = facts->product,
                         .transport = facts->transport,
                         .interface = facts->interfaceNumber,
                         .driver = hidraw.parent("hid", nullptr).driver(),
                         .access = access(facts->node),
                         .maxFeatureReportSize = readMaxFeatureReportSize(facts->hidSyspath)});
    }
    std::ranges::sort(nodes, {}, &HIDNodeFact::node);
    return nodes;
}

std::vector<USBInterfaceFact> examineInterfaces(udev *context, const UdevDevice &device)
{
    std::vector<USBInterfaceFact> interfaces;
    for (const auto &candidate : devicesOfSubsystem(context, "usb", &device)) {
        if (const auto number = candidate.hexAttribute("bInterfaceNumber")) {
            USBInterfaceFact interface{
                .number = static_cast<int>(*number), .driver = candidate.driver(), .node = std::nullopt};
            for (const auto &hidraw : devicesOfSubsystem(context, "hidraw", &candidate)) {
                interface.node = hidraw.node();
            }
            interfaces.push_back(std::move(interface));
        }
    }
    std::ranges::sort(interfaces, {}, &USBInterfaceFact::number);
    return interfaces;
}

std::vector<USBDeviceFact> examineUSBDevices(udev *context)
{
    std::vector<USBDeviceFact> devices;
    for (const auto vendorID : makerVendorIDs) {
        for (const auto &device : usbDevices(context, vendorID, std::nullopt)) {
            const std::string node = device.node().value_or("");
            devices.push_back({.node = node,
                               .vendorID = vendorID,
                               .productID = usbID(device, "idProduct"),
                               .name = usbProduct(device),
                               .access = access(node),
                               .interfaces = examineInterfaces(context, device)});
        }
    }
    return devices;
}

/// The rules file that udev uses, and whether it is masked.
struct Rules {
    std::optional<std::string> path;
    bool isMasked = false;
};

Rules findRules(const std::vector<std::string> &directories)
{
    for (const auto &directory : directories) {
        std::string path = directory + "/" + std::string(rulesName);
        struct ::stat status{};
        if (::stat(path.c_str(), &status) == 0) {
            return {std::move(path), status.st_size == 0}; // so is a device, such as /dev/null
        }
    }
    return {};
}

std::string remedyOfRefusal(const Rules &rules)
{
    if (rules.path && !rules.isMasked) {
        return "Plug the mouse in again, and run the program in the desktop session at this computer: the "
               "udev "
               "rules give access to no one else.";
    }
    return (rules.path ? "sudo rm " + *rules.path + " && " : "") +
           "kelmothctl doctor --udev-rule | sudo tee /etc/udev/rules.d/" + std::string(rulesName) +
           " && sudo udevadm control --reload && sudo udevadm trigger";
}

std::string title(const std::string &node, const std::optional<std::string> &name)
{
    return name ? node + " (" + *name + ")" : node;
}

/// The facts about one mouse.
struct Mouse {
    std::int64_t vendorID = 0;
    std::int64_t productID = 0;
    bool isBluetooth = false;
    std::string name;                   ///< name of its first node
    const USBDeviceFact *usb = nullptr; ///< null unless it is a USB device
    const HIDNodeFact *node = nullptr;  ///< the node that takes commands; null without one
    bool hasNode = false;
};

/// Derives the problems from the facts.
class Judge {
public:
    Judge(Examination &examination, const DoctorScope &scope, Rules rules)
        : m_examination(examination), m_scope(scope), m_rules(std::move(rules))
    {
    }

    void judge()
    {
        for (const auto &device : m_examination.usbDevices) {
            auto &mouse = mouseOf(device.vendorID, device.productID, false, title(device.node, device.name));
            mouse.usb = &device;
        }
        for (auto &node : m_examination.hidNodes) {
            auto &mouse = mouseOf(node.vendorID, node.productID, node.transport == "Bluetooth",
                                  title(node.node, node.name));
            node.takesCommands = node.maxFeatureReportSize.value_or(0) >= commandSize && !mouse.isBluetooth &&
                                 isSupported(mouse);
            mouse.hasNode = true;
            mouse.node = node.takesCommands && !mouse.node ? &node : mouse.node;
        }
        std::ranges::for_each(m_mice, [this](const auto &mouse) { judge(mouse); });
        if (m_mice.empty()) {
            add(Kind::noDevice,
                m_scope.product ? "No mouse with this product ID is attached."
                                : "No mouse of this maker is attached.",
                "Plug the mouse or its receiver in, and switch the mouse on.");
        }
        if (m_wasRefused && m_rules.isMasked) {
            add(Kind::rulesMasked, "The udev rules are masked: " + *m_rules.path + " is empty.",
                remedyOfRefusal(m_rules));
        } else if (m_wasRefused && !m_rules.path) {
            add(Kind::rulesMissing, "The udev rules " + std::string(rulesName) + " are not installed.",
                remedyOfRefusal(m_rules));
        }
    }

private:
    void add(Kind kind, std::string what, std::string remedy)
    {
        m_examination.problems.push_back({kind, std::move(what), std::move(remedy)});
    }

    Mouse &mouseOf(std::int64_t vendorID, std::int64_t productID, bool isBluetooth, std::string name)
    {
        const auto known = std::ranges::find_if(m_mice, [&](const auto &mouse) {
            return mouse.vendorID == vendorID && mouse.productID == productID &&
                   mouse.isBluetooth == isBluetooth;
        });
        if (known != m_mice.end()) {
            return *known;
        }
        m_mice.push_back({vendorID, productID, isBluetooth, std::move(name)});
        return m_mice.back();
    }

    bool isSupported(const Mouse &mouse) const
    {
        const auto &supported = m_scope.supported;
        return mouse.vendorID == makerVendorIDs.front() &&
               std::ranges::find(supported, mouse.productID) != supported.end();
    }

    void judge(const Mouse &mouse)
    {
        if (mouse.isBluetooth) {
            add(Kind::bluetooth, mouse.name + " is attached over Bluetooth, where it takes no settings.",
                "Attach it with its cable or its 2.4 GHz receiver to configure it.");
        } else if (mouse.vendorID != makerVendorIDs.front()) {
            add(Kind::otherVendor, mouse.name + " has a vendor ID with which mice take no settings.",
                "Attach it with its cable or its 2.4 GHz receiver to configure it.");
        } else if (!isSupported(mouse)) {
            add(Kind::unsupported, mouse.name + " is of a model that is not supported.",
                "Attach one of the supported mice; \"kelmothctl --help\" names them.");
        } else if (!mouse.node) {
            judgeInterfaces(mouse);
        } else if (isRefusal(mouse.node->access)) {
            m_wasRefused = true;
            add(Kind::noAccess, "No permission to open " + title(mouse.node->node, mouse.node->name) + ".",
                remedyOfRefusal(m_rules));
        } else if (mouse.node->access != 0) {
            add(Kind::nodeFailed,
                "Cannot open " + title(mouse.node->node, mouse.node->name) + ": " +
                    std::generic_category().message(mouse.node->access) + ".",
                "Plug the mouse in again.");
        }
    }

    /// Why a supported mouse has no node that takes commands.
    void judgeInterfaces(const Mouse &mouse)
    {
        const auto &interfaces = mouse.usb ? mouse.usb->interfaces : std::vector<USBInterfaceFact>{};
        if (mouse.usb && interfaces.empty()) {
            add(Kind::noHIDNode, mouse.name + " shows no interfaces: the kernel has not configured it.",
                "Plug it in again, at another port or with another cable.");
        } else if (std::ranges::any_of(interfaces, [](const auto &each) { return !each.driver; })) {
            add(Kind::noDriver, "Interfaces of " + mouse.name + " have no driver.",
                "Load the usbhid driver (\"sudo modprobe usbhid\") and plug the mouse in again.");
        } else if (!mouse.hasNode) {
            add(Kind::noHIDNode, "The driver of " + mouse.name + " offers no hidraw nodes.",
                "Load the kernel's hidraw support (CONFIG_HIDRAW), or plug the mouse in again.");
        } else {
            add(Kind::noCommandInterface, mouse.name + " has no interface that takes commands.",
                "Plug the mouse in again; if that does not help, report it.");
        }
    }

    Examination &m_examination;
    const DoctorScope &m_scope;
    const Rules m_rules;
    std::vector<Mouse> m_mice;
    bool m_wasRefused = false;
};

} // namespace

std::string_view nameOf(Kind kind)
{
    static constexpr std::array<std::string_view, 11> names{
        "no-device", "no-driver",    "no-hid-node", "no-command-interface", "no-access",   "node-failed",
        "no-rules",  "rules-masked", "bluetooth",   "other-vendor",         "unsupported",
    };
    return names.at(static_cast<std::size_t>(kind));
}

std::string accessText(int access)
{
    if (access == 0) {
        return "can be opened";
    }
    return isRefusal(access) ? "no permission" : std::generic_category().message(access);
}

bool Examination::canConfigure() const
{
    return std::ranges::any_of(hidNodes,
                               [](const auto &node) { return node.takesCommands && node.access == 0; });
}

bool Examination::has(DoctorProblem::Kind kind) const
{
    return std::ranges::find(problems, kind, &DoctorProblem::kind) != problems.end();
}

std::vector<std::string> defaultRulesDirectories()
{
    return {"/etc/udev/rules.d", "/run/udev/rules.d", "/usr/local/lib/udev/rules.d", "/usr/lib/udev/rules.d",
            "/lib/udev/rules.d"};
}

std::string permissionRemedy(const std::vector<std::string> &rulesDirectories)
{
    return remedyOfRefusal(findRules(rulesDirectories));
}

Examination examine(const DoctorScope &scope, const std::vector<std::string> &rulesDirectories)
{
    Examination examination;
    const auto rules = findRules(rulesDirectories);
    examination.rulesFile = rules.path;
    examination.areRulesMasked = rules.isMasked;
    examination.landlockVersion = landlockVersion();
    if (const UdevPtr<udev> context(udev_new()); context) {
        examination.usbDevices = examineUSBDevices(context.get());
        examination.hidNodes = examineHIDNodes(context.get());
    }
    const auto isOther = [&scope](const auto &fact) {
        return scope.product && fact.productID != *scope.product;
    };
    std::erase_if(examination.usbDevices, isOther);
    std::erase_if(examination.hidNodes, isOther);
    Judge(examination, scope, rules).judge();
    return examination;
}

} // namespace kelmoth
