#include "CLI/Command.h"
#include "CLI/Reports/MouseReport.h"
#include "Platform/Linux/ReaderWatch.h"

#include <QCoroFuture>

namespace kelmoth {

namespace {

std::string changeLine(const MouseChange &change, const Terminal &terminal)
{
    static constexpr std::array styles{Style::good, Style::bad, Style::heading};
    const auto &device = change.device;
    auto line = terminal.styled(rawValue(change.kind), styles[static_cast<std::size_t>(change.kind)]) + ' ' +
                terminal.styled(device.name(), Style::plain);
    if (change.kind == MouseChange::Kind::battery) {
        return line + ' ' + batteryText(device) + '\n';
    }
    return line + " (" + productIDText(device.productID) + ", " + device.connectionLabel() + ")\n";
}

/// Writes a line for each event of a mouse, until its reader or the process ends. Sleeps in between, without
/// a timer.
class WatchCommand : public Command {
public:
    WatchCommand()
        : Command(
              {"watch", "Show attach, detach and battery changes as they happen",
               "One line for each change, beginning with the mice that are there, until it is interrupted."})
    {
    }

    QCoro::Task<ExitStatus> run(Session *session) override
    {
        m_session = session;
        // Otherwise a watch without events would outlive its reader.
        m_reader.emplace(session->output().standardOutput());
        // Queued, so that level and charging status, which change one after the other, are compared together.
        auto &monitor = session->monitor(true);
        QObject::connect(
            &monitor, &HIDMonitor::connectedDevicesChanged, &monitor, [this] { report(); },
            Qt::QueuedConnection);
        if (!monitor.isMonitoring()) {
            co_return session->report(
                {Failure::Code::failed, "the system does not tell of mice that come and go"});
        }
        report();
        QFuture<void> ended = m_reader->ended();
        co_await ended;
        co_return ExitStatus::done;
    }

private:
    void report()
    {
        auto &output = m_session->output();
        auto devices = m_session->devices();
        for (const auto &change : changesBetween(m_known, devices)) {
            const bool isGone = change.kind == MouseChange::Kind::detached;
            auto &mouse = m_mice[change.device.id];
            mouse.device = change.device;
            if (!isGone) {
                mouse = look(change.device, m_session->monitor());
            }
            nlohmann::ordered_json json{{"schema", schema}, {"event", rawValue(change.kind)}};
            json.update(mouseJSON(mouse));
            const bool written = m_session->options().json
                                     ? output.printJSON(json)
                                     : output.print(changeLine(change, m_session->terminal()));
            if (!written) {
                m_reader->end();
                return;
            }
            if (isGone) {
                m_mice.erase(change.device.id);
            }
        }
        m_known = std::move(devices);
    }

    Session *m_session = nullptr;
    std::optional<ReaderWatch> m_reader;
    std::vector<RazerDevice> m_known;
    std::map<QUuid, ListedMouse> m_mice; ///< as last seen
};

} // namespace

constinit const CommandFactory watchCommand = [] { return CommandPointer(new WatchCommand); };

} // namespace kelmoth
