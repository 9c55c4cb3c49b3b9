#include "CLI/Command.h"
#include "CLI/Reports/MouseReport.h"
#include "CLI/Table.h"

#include <chrono>

namespace kelmoth {

namespace {

/// Timeout: enough for several mice of which one does not answer.
constexpr std::chrono::seconds limit{5};

std::string renderList(const std::vector<ListedMouse> &mice, const Terminal &terminal)
{
    Table table;
    table.addRow({{"NAME", Style::heading},
                  {"PRODUCT", Style::heading},
                  {"CONNECTION", Style::heading},
                  {"BATTERY", Style::heading},
                  {"CONFIGURABLE", Style::heading}});
    for (const auto &[device, path, obstacle] : mice) {
        const std::string reason(tableRow(obstacle).text);
        table.addRow({{device.name()},
                      {productIDText(device.productID)},
                      {device.connectionLabel()},
                      {batteryText(device)},
                      reason.empty() ? Table::Cell{"yes", Style::good}
                                     : Table::Cell{"no (" + reason + ")", Style::warning}});
    }
    return table.render(terminal);
}

/// Shows the attached mice.
class ListCommand : public Command {
public:
    ListCommand()
        : Command({"list", "Show the attached mice and whether they can be configured",
                   "Mice over Bluetooth are listed too, and why they cannot be configured."})
    {
    }

    QCoro::Task<ExitStatus> run(Session *session) override
    {
        auto &monitor = session->monitor();
        if (!monitor.isMonitoring() && monitor.connectedDevices().empty()) {
            co_return session->report(noView);
        }
        std::vector<ListedMouse> mice;
        const QDeadlineTimer deadline(limit);
        for (auto &mouse : listMice(session)) {
            const bool isThere = co_await readBattery(&mouse, &monitor, deadline);
            if (isThere) {
                mice.push_back(mouse);
            }
        }
        if (session->options().json) {
            auto list = nlohmann::ordered_json::array();
            std::ranges::transform(mice, std::back_inserter(list), mouseJSON);
            session->output().printJSON(list);
        } else if (!mice.empty()) {
            session->output().print(renderList(mice, session->terminal()));
        } else {
            session->output().complain(noneAttached(session->options()) +
                                       "\n\"kelmothctl doctor\" looks closer.");
        }
        co_return ExitStatus::done;
    }
};

} // namespace

constinit const CommandFactory listCommand = [] { return CommandPointer(new ListCommand); };

} // namespace kelmoth
