#include "CLI/Command.h"
#include "CLI/MouseChanges.h"
#include "CLI/Reports/MouseReport.h"
#include "Platform/FileDescriptor.h"

#include <QCoroFuture>
#include <QPromise>
#include <QSocketNotifier>

#include <cstdint>
#include <sys/epoll.h>
#include <sys/socket.h>

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

/// What tells that nobody reads any more, besides errors and the end of both directions, which always do.
/// Over a network the reader's going looks like its having said all that it has to say; on this machine it
/// does not.
std::uint32_t signOfNoReader(int descriptor)
{
    int family = AF_UNSPEC;
    ::socklen_t size = sizeof family;
    const bool isSocket = ::getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &family, &size) == 0;
    return isSocket && family != AF_UNIX ? std::uint32_t{EPOLLRDHUP} : 0;
}

/// Writes a line for each thing that happens to a mouse, until the end of its reader or of the process.
/// Sleeps in between: it has no timer.
class WatchCommand : public Command {
public:
    WatchCommand()
        : Command({"watch", "Show attach, detach and battery changes as they happen",
                   R"(Writes one line for each change, beginning with the mice that are attached, until
it is interrupted. With --json each line is an object.

Example:
  kelmothctl watch --json | jq --unbuffered -r '.event')"})
    {
    }

    QCoro::Task<ExitStatus> run(Session *session) override
    {
        m_session = session;
        m_end.start();
        watchReader();
        // Level and charging status change one after the other: queued, they are seen together.
        auto &monitor = session->monitor(true);
        QObject::connect(
            &monitor, &HIDMonitor::connectedDevicesChanged, &monitor, [this] { report(); },
            Qt::QueuedConnection);
        if (!monitor.isMonitoring()) {
            co_return session->report(
                {Failure::Code::failed, "the system does not tell of mice that come and go"});
        }
        report();
        QFuture<void> ended = m_end.future();
        co_await ended;
        co_return ExitStatus::done;
    }

private:
    void watchReader()
    {
        // Without this a watch of mice that never change would outlive its reader. What comes in from there,
        // which a notifier of the descriptor itself would tell of without end, is not asked for.
        const int descriptor = m_session->output().standardOutput();
        ::epoll_event event{.events = signOfNoReader(descriptor), .data = {}};
        m_hangUp = FileDescriptor(::epoll_create1(EPOLL_CLOEXEC));
        if (::epoll_ctl(m_hangUp.get(), EPOLL_CTL_ADD, descriptor, &event) != 0) {
            return; // a file, which has no reader
        }
        m_reader = std::make_unique<QSocketNotifier>(m_hangUp.get(), QSocketNotifier::Read);
        QObject::connect(m_reader.get(), &QSocketNotifier::activated, m_reader.get(), [this] { finish(); });
    }

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
                finish();
                return;
            }
            if (isGone) {
                m_mice.erase(change.device.id);
            }
        }
        m_known = std::move(devices);
    }

    void finish()
    {
        if (m_reader) {
            m_reader->setEnabled(false);
        }
        m_end.finish();
    }

    Session *m_session = nullptr;
    FileDescriptor m_hangUp; ///< becomes readable when the reader goes
    std::unique_ptr<QSocketNotifier> m_reader;
    std::vector<RazerDevice> m_known;
    std::map<QUuid, ListedMouse> m_mice; ///< as they were last seen
    QPromise<void> m_end;
};

} // namespace

std::unique_ptr<Command> watchCommand()
{
    return std::make_unique<WatchCommand>();
}

} // namespace kelmoth
