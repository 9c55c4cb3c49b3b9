#include "Platform/Linux/Doctor.h"

#include "Platform/FileDescriptor.h"
#include "Platform/Linux/Confinement.h"
#include "Platform/Linux/Udev.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <utility>

namespace kelmoth {

namespace {

using Kind = DoctorProblem::Kind;

constexpr std::array<std::uint16_t, 2> makerVendorIDs{0x1532, 0x068E};
constexpr std::string_view rulesName = "70-kelmoth.rules";

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

std::optional<std::string> findRules(const std::vector<std::string> &directories)
{
    for (const auto &directory : directories) {
        std::string path = directory + "/" + std::string(rulesName);
        if (::access(path.c_str(), F_OK) == 0) {
            return path;
        }
    }
    return std::nullopt;
}

std::string remedyOfRefusal(bool hasRules)
{
    return hasRules
               ? "Plug the mouse in again, and run the program in the desktop session at this computer: "
                 "the udev rules give access to no one else."
               : "Copy " + std::string(rulesName) +
                     " to /etc/udev/rules.d as root, run \"udevadm control --reload\", and plug the mouse "
                     "in again: the udev rules give the user at this computer access to it.";
}

std::string title(const std::string &node, const std::optional<std::string> &name)
{
    return name ? node + " (" + *name + ")" : node;
}

/// Judges the facts. One problem of a kind for each device or node that has it.
class Judge {
public:
    explicit Judge(Examination &examination) : m_examination(examination) {}

    void judge()
    {
        if (m_examination.usbDevices.empty() && m_examination.hidNodes.empty()) {
            add(Kind::noDevice, "No mouse of this maker is attached.",
                "Plug the mouse or its receiver in, and switch the mouse on.");
            return;
        }
        for (const auto &device : m_examination.usbDevices) {
            judgeInterfaces(device);
        }
        for (const auto &node : m_examination.hidNodes) {
            judgeNode(node);
        }
        if (m_wasRefused && !m_examination.rulesFile) {
            add(Kind::rulesMissing, "The udev rules " + std::string(rulesName) + " are not installed.",
                remedyOfRefusal(false));
        }
    }

private:
    void add(Kind kind, std::string what, std::string remedy)
    {
        m_examination.problems.push_back({kind, std::move(what), std::move(remedy)});
    }

    void judgeInterfaces(const USBDeviceFact &device)
    {
        const auto name = title(device.node, device.name);
        for (const auto &interface : device.interfaces) {
            const auto label = "interface " + std::to_string(interface.number) + " of " + name;
            if (interface.driver && !interface.node) {
                add(Kind::noHIDNode,
                    "Driver " + *interface.driver + " holds " + label + " and offers no hidraw node.",
                    "Load the kernel's hidraw support (CONFIG_HIDRAW), or plug the mouse in again.");
            } else if (!interface.driver && device.access != 0) {
                m_wasRefused = m_wasRefused || isRefusal(device.access);
                add(Kind::noHIDNode, "No driver holds " + label + ", and its USB node cannot be opened.",
                    "Load the usbhid driver (\"modprobe usbhid\") and plug the mouse in again.");
            }
        }
        if (device.interfaces.empty()) {
            add(Kind::noHIDNode, name + " shows no interfaces: the kernel has not configured it.",
                "Plug it in again, at another port or with another cable.");
        }
    }

    void judgeNode(const HIDNodeFact &node)
    {
        const auto name = title(node.node, node.name);
        if (node.transport == "Bluetooth") {
            add(Kind::bluetooth, name + " is attached over Bluetooth, where it takes no settings.",
                "Attach it with its cable or its 2.4 GHz receiver to configure it.");
            return;
        }
        if (isRefusal(node.access)) {
            m_wasRefused = true;
            add(Kind::noAccess, "No permission to open " + name + ".",
                remedyOfRefusal(m_examination.rulesFile.has_value()));
        } else if (node.access != 0) {
            add(Kind::nodeFailed,
                "Cannot open " + name + ": " + std::generic_category().message(node.access) + ".",
                "Plug the mouse in again.");
        }
    }

    Examination &m_examination;
    bool m_wasRefused = false;
};

} // namespace

std::vector<std::string> defaultRulesDirectories()
{
    return {"/etc/udev/rules.d", "/run/udev/rules.d", "/usr/local/lib/udev/rules.d", "/usr/lib/udev/rules.d",
            "/lib/udev/rules.d"};
}

std::string permissionRemedy(const std::vector<std::string> &rulesDirectories)
{
    return remedyOfRefusal(findRules(rulesDirectories).has_value());
}

Examination examine(const std::vector<std::string> &rulesDirectories)
{
    Examination examination;
    examination.rulesFile = findRules(rulesDirectories);
    examination.landlockVersion = landlockVersion();
    if (const UdevPtr<udev> context(udev_new()); context) {
        examination.usbDevices = examineUSBDevices(context.get());
        examination.hidNodes = examineHIDNodes(context.get());
    }
    Judge(examination).judge();
    return examination;
}

} // namespace kelmoth
