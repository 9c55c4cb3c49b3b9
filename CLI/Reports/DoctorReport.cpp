#include "CLI/Reports/DoctorReport.h"

#include "CLI/Reports/MouseReport.h"
#include "CLI/Table.h"
#include "Platform/Qt/QtPlatform.h"

#include <QSysInfo>

namespace kelmoth {

namespace {

using JSON = nlohmann::ordered_json;

/// A value that may be missing, as JSON has it.
template <class Value> JSON orNull(const std::optional<Value> &value)
{
    return value ? JSON(*value) : JSON();
}

JSON variable(const char *name)
{
    const auto value = qEnvironmentVariable(name);
    return value.isEmpty() ? JSON() : JSON(value.toStdString());
}

/// The system, with the member names of the JSON.
JSON systemJSON()
{
    const bool isRemote = !variable("SSH_CONNECTION").is_null() || !variable("SSH_TTY").is_null();
    return {{"version", resourceMainBundle()->version()},
            {"kernel", QSysInfo::kernelVersion().toStdString()},
            {"distribution", QSysInfo::prettyProductName().toStdString()},
            {"desktop", variable("XDG_CURRENT_DESKTOP")},
            {"session", variable("XDG_SESSION_TYPE")},
            {"seat", variable("XDG_SEAT")},
            {"remote", isRemote}};
}

Table::Cell accessCell(int access)
{
    return {accessText(access), access == 0 ? Style::good : Style::bad};
}

std::string factText(const JSON &value)
{
    if (value.is_null()) {
        return "none";
    }
    if (value.is_boolean()) {
        return value.get<bool>() ? "yes" : "no";
    }
    return value.is_string() ? value.get<std::string>() : value.dump();
}

std::string renderSystem(const Terminal &terminal)
{
    Table table;
    const auto system = systemJSON();
    for (const auto &[name, value] : system.items()) {
        table.addRow({{name}, {factText(value)}});
    }
    return underHeading("System", table, terminal) + '\n';
}

std::string renderFacts(const Examination &examination, const Terminal &terminal)
{
    Table table;
    for (const auto &device : examination.usbDevices) {
        table.addRow({{device.node.empty() ? "-" : device.node},
                      {device.name.value_or("Unknown")},
                      {productIDText(device.productID)},
                      {"USB device"},
                      {},
                      accessCell(device.access)});
    }
    for (const auto &node : examination.hidNodes) {
        const auto place = node.interface ? "interface " + std::to_string(*node.interface) : node.transport;
        table.addRow({{node.node},
                      {node.name.value_or("Unknown")},
                      {productIDText(node.productID)},
                      {place + (node.takesCommands ? ", takes commands" : "")},
                      {node.driver.value_or("no driver")},
                      accessCell(node.access)});
    }
    const bool isEmpty = examination.usbDevices.empty() && examination.hidNodes.empty();
    return isEmpty ? "" : underHeading("Devices", table, terminal) + '\n';
}

std::string renderProblems(const Examination &examination, const Terminal &terminal)
{
    std::string text;
    const auto &problems = examination.problems;
    for (auto problem = problems.begin(); problem != problems.end(); ++problem) {
        text += terminal.styled(problem->what, Style::warning) + '\n';
        // Several problems often share a remedy.
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

std::string_view verdictText(ExitStatus verdict)
{
    if (verdict == ExitStatus::done) {
        return "A mouse can be configured.";
    }
    return verdict == ExitStatus::noPermission ? "A mouse is attached, but you may not open it."
                                               : "There is no mouse to configure.";
}

JSON usbJSON(const USBDeviceFact &device)
{
    auto interfaces = JSON::array();
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

JSON hidJSON(const HIDNodeFact &node)
{
    return {{"node", node.node},
            {"vendorID", node.vendorID},
            {"productID", node.productID},
            {"name", orNull(node.name)},
            {"transport", node.transport},
            {"interface", orNull(node.interface)},
            {"driver", orNull(node.driver)},
            {"maxFeatureReportSize", orNull(node.maxFeatureReportSize)},
            {"takesCommands", node.takesCommands},
            {"accessible", node.access == 0},
            {"access", accessText(node.access)}};
}

JSON problemJSON(const DoctorProblem &problem)
{
    return {{"kind", nameOf(problem.kind)}, {"what", problem.what}, {"remedy", problem.remedy}};
}

JSON listJSON(const auto &items, JSON (*toJSON)(const typename std::decay_t<decltype(items)>::value_type &))
{
    auto list = JSON::array();
    std::ranges::transform(items, std::back_inserter(list), toJSON);
    return list;
}

} // namespace

std::string renderDiagnosis(const Diagnosis &diagnosis, const Terminal &terminal)
{
    const auto &[examination, isSimulated, verdict] = diagnosis;
    const auto rules = "udev rule: " + examination.rulesFile.value_or("not installed") +
                       (examination.areRulesMasked ? " (masked)" : "");
    const auto text =
        isSimulated ? std::string("These mice are simulated: nothing of this system has been looked at.\n")
                    : renderFacts(examination, terminal) + renderProblems(examination, terminal) +
                          terminal.styled(rules, Style::plain) + '\n' +
                          confinementText(examination.landlockVersion) + '\n';
    const auto style = verdict == ExitStatus::done ? Style::good : Style::bad;
    return renderSystem(terminal) + text + terminal.styled(verdictText(verdict), style) + '\n';
}

JSON diagnosisJSON(const Diagnosis &diagnosis)
{
    const auto &examination = diagnosis.examination;
    return {{"schema", schema},
            {"system", systemJSON()},
            {"simulated", diagnosis.isSimulated},
            {"canConfigure", diagnosis.verdict == ExitStatus::done},
            {"rulesFile", orNull(examination.rulesFile)},
            {"rulesMasked", examination.areRulesMasked},
            {"landlockVersion", examination.landlockVersion},
            {"usbDevices", listJSON(examination.usbDevices, usbJSON)},
            {"hidNodes", listJSON(examination.hidNodes, hidJSON)},
            {"problems", listJSON(examination.problems, problemJSON)}};
}

} // namespace kelmoth
