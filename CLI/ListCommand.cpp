#include "CLI/ListCommand.h"

#include "CLI/BatteryReadings.h"
#include "CLI/MouseSummary.h"
#include "CLI/Session.h"
#include "CLI/Table.h"

#include <QCoroFuture>

namespace kelmoth {

namespace {

std::string renderList(const std::vector<MouseSummary> &mice, const Terminal &terminal)
{
    Table table;
    table.addRow({{"NAME", Style::heading},
                  {"PRODUCT", Style::heading},
                  {"CONNECTION", Style::heading},
                  {"BATTERY", Style::heading},
                  {"CONFIGURABLE", Style::heading}});
    for (const auto &mouse : mice) {
        table.addRow({{mouse.device.name()},
                      {productIDText(mouse.device.productID)},
                      {mouse.device.connectionLabel()},
                      {batteryText(mouse.device)},
                      mouse.isConfigurable() ? Table::Cell{"yes", Style::good}
                                             : Table::Cell{"no (" + mouse.reason + ")", Style::warning}});
    }
    return table.render(terminal);
}

} // namespace

std::string_view ListCommand::details() const
{
    return R"(Mice over Bluetooth are listed too, and why they cannot be configured.

Example:
  kelmothctl list --json | jq -r '.[].name')";
}

QCoro::Task<ExitStatus> ListCommand::run(Session *session)
{
    auto &monitor = session->monitor();
    if (!monitor.isMonitoring() && monitor.connectedDevices().empty()) {
        co_return session->report({ExitStatus::failed, std::string(noView)});
    }
    auto mice = summarizeMice(monitor);
    const BatteryReadings batteries(monitor, mice);
    co_await batteries.finished();
    mice = relisted(std::move(mice), monitor);

    if (session->options().json) {
        auto list = nlohmann::ordered_json::array();
        for (const auto &mouse : mice) {
            list.push_back(mouseJSON(mouse));
        }
        session->output().printJSON(list);
    } else if (!mice.empty()) {
        session->output().print(renderList(mice, session->terminal()));
    } else {
        session->output().complain(noneAttached(session->options().productID) +
                                   "\n\"kelmothctl doctor\" looks closer.");
    }
    co_return ExitStatus::done;
}

} // namespace kelmoth
