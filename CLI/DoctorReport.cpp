#include "CLI/DoctorReport.h"

#include "CLI/Table.h"
#include "Core/Device/RawValues.h"
#include "Core/Device/RazerDevice.h"
#include "Core/HID/RazerProtocol.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <limits>
#include <system_error>

namespace kelmoth {

template <> struct RawValues<DoctorProblem::Kind> {
    static constexpr std::array table{
        std::string_view{"noDevice"},   std::string_view{"noHIDNode"},    std::string_view{"noAccess"},
        std::string_view{"nodeFailed"}, std::string_view{"rulesMissing"}, std::string_view{"bluetooth"},
    };
};

namespace {

/// Whether a node is the one through which a mouse is configured, access aside.
bool takesCommands(const HIDNodeFact &node)
{
    constexpr std::int64_t largestID = std::numeric_limits<std::uint16_t>::max();
    if (node.vendorID < 0 || node.vendorID > largestID || node.productID < 0 || node.productID > largestID) {
        return false;
    }
    RazerDevice device;
    device.vendorID = static_cast<std::uint16_t>(node.vendorID);
    device.productID = static_cast<std::uint16_t>(node.productID);
    device.transport = node.transport;
    device.advertisedName = node.name;
    return device.isConfigurable() &&
           node.maxFeatureReportSize.value_or(0) >= static_cast<std::int64_t>(RazerProtocol::reportSize);
}

bool isForbidden(int access)
{
    return access == EACCES || access == EPERM;
}

std::string accessText(int access)
{
    if (access == 0) {
        return "can be opened";
    }
    return isForbidden(access) ? "no permission" : std::generic_category().message(access);
}

std::string idText(std::int64_t id)
{
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "0x%04llX", static_cast<unsigned long long>(id));
    return text.data();
}

Table::Cell accessCell(int access)
{
    return {accessText(access), access == 0 ? Style::good : Style::bad};
}

std::string renderFacts(const Examination &examination, const Terminal &terminal)
{
    Table table;
    for (const auto &device : examination.usbDevices) {
        table.addRow({{device.node.empty() ? "-" : device.node},
                      {device.name.value_or("Unknown")},
                      {idText(device.productID)},
                      {"USB device"},
                      {},
                      accessCell(device.access)});
    }
    for (const auto &node : examination.hidNodes) {
        const auto place = node.interface ? "interface " + std::to_string(*node.interface) : node.transport;
        table.addRow({{node.node},
                      {node.name.value_or("Unknown")},
                      {idText(node.productID)},
                      {place + (takesCommands(node) ? ", takes commands" : "")},
                      {node.driver.value_or("no driver")},
                      accessCell(node.access)});
    }
    const auto rules =
        examination.rulesFile ? "udev rule: " + *examination.rulesFile : "udev rule: not installed";
    return underHeading("Devices", table, terminal) + '\n' + terminal.styled(rules, Style::plain) + "\n\n";
}

std::string renderProblems(const Examination &examination, const Terminal &terminal)
{
    std::string text;
    const auto &problems = examination.problems;
    for (auto problem = problems.begin(); problem != problems.end(); ++problem) {
        text += terminal.styled(problem->what, Style::warning) + '\n';
        // Several nodes often have one remedy in common.
        if (const auto next = problem + 1; next == problems.end() || next->remedy != problem->remedy) {
            text += "  " + terminal.styled(problem->remedy, Style::plain) + '\n';
        }
    }
    return text.empty() ? text : text + '\n';
}

std::string confinementText(int landlockVersion)
{
    return landlockVersion > 0 ? "The panel confines itself to its own files (Landlock " +
                                     std::to_string(landlockVersion) + ")."
                               : "The panel runs with all of your rights: this kernel has no Landlock.";
}

std::string_view verdictText(ExitStatus status)
{
    switch (status) {
    case ExitStatus::done:
        return "A mouse can be configured.";
    case ExitStatus::noPermission:
        return "A mouse is attached, but you may not open it.";
    default:
        return "There is no mouse to configure.";
    }
}

/// A value that may be missing, as JSON has it.
template <class Value> nlohmann::ordered_json orNull(const std::optional<Value> &value)
{
    return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json(nullptr);
}

nlohmann::ordered_json usbJSON(const USBDeviceFact &device)
{
    auto interfaces = nlohmann::ordered_json::array();
    for (const auto &interface : device.interfaces) {
        interfaces.push_back({{"number", interface.number},
                              {"driver", orNull(interface.driver)},
                              {"node", orNull(interface.node)}});
    }
    return {{"node", device.node},
            {"vendorID", device.vendorID},
            {"productID", device.productID},
            {"name", orNull(device.name)},
            {"accessible", device.access == 0},
            {"access", accessText(device.access)},
            {"interfaces", std::move(interfaces)}};
}

nlohmann::ordered_json hidJSON(const HIDNodeFact &node)
{
    return {{"node", node.node},
            {"vendorID", node.vendorID},
            {"productID", node.productID},
            {"name", orNull(node.name)},
            {"transport", node.transport},
            {"interface", orNull(node.interface)},
            {"driver", orNull(node.driver)},
            {"maxFeatureReportSize", orNull(node.maxFeatureReportSize)},
            {"takesCommands", takesCommands(node)},
            {"accessible", node.access == 0},
            {"access", accessText(node.access)}};
}

} // namespace

ExitStatus verdict(const Examination &examination)
{
    auto status = ExitStatus::noMouse;
    for (const auto &node : examination.hidNodes) {
        if (takesCommands(node) && node.access == 0) {
            return ExitStatus::done;
        }
        if (takesCommands(node) && isForbidden(node.access)) {
            status = ExitStatus::noPermission;
        }
    }
    return status;
}

std::string renderExamination(const Examination &examination, const Terminal &terminal)
{
    const auto status = verdict(examination);
    std::string text;
    if (!examination.usbDevices.empty() || !examination.hidNodes.empty()) {
        text += renderFacts(examination, terminal);
    }
    text += renderProblems(examination, terminal);
    text += terminal.styled(confinementText(examination.landlockVersion), Style::plain) + '\n';
    return text +
           terminal.styled(verdictText(status), status == ExitStatus::done ? Style::good : Style::bad) + '\n';
}

nlohmann::ordered_json examinationJSON(const Examination &examination)
{
    nlohmann::ordered_json json;
    json["simulated"] = false;
    json["canConfigure"] = verdict(examination) == ExitStatus::done;
    json["rulesFile"] = orNull(examination.rulesFile);
    json["landlockVersion"] = examination.landlockVersion;
    json["usbDevices"] = nlohmann::ordered_json::array();
    for (const auto &device : examination.usbDevices) {
        json["usbDevices"].push_back(usbJSON(device));
    }
    json["hidNodes"] = nlohmann::ordered_json::array();
    for (const auto &node : examination.hidNodes) {
        json["hidNodes"].push_back(hidJSON(node));
    }
    json["problems"] = nlohmann::ordered_json::array();
    for (const auto &problem : examination.problems) {
        json["problems"].push_back(
            {{"kind", rawValue(problem.kind)}, {"what", problem.what}, {"remedy", problem.remedy}});
    }
    return json;
}

} // namespace kelmoth
