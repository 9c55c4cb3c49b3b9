#include "CLI/MouseWatch.h"

#include "CLI/MouseChanges.h"
#include "CLI/MouseSummary.h"

#include <array>
#include <cstdint>
#include <sys/epoll.h>
#include <sys/socket.h>

namespace kelmoth {

namespace {

nlohmann::ordered_json changeJSON(const MouseChange &change, const std::string &path)
{
    nlohmann::ordered_json json;
    json["event"] = rawValue(change.kind);
    json.update(mouseJSON(change.device, path));
    return json;
}

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

} // namespace

MouseWatch::MouseWatch(Session *session) : m_session(session)
{
    m_promise.start();
    watchReader();
    // Level and charging status change one after the other: queued, they are seen together.
    connect(&session->monitor(true), &HIDMonitor::connectedDevicesChanged, this, &MouseWatch::report,
            Qt::QueuedConnection);
    report();
}

void MouseWatch::watchReader()
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
    connect(m_reader.get(), &QSocketNotifier::activated, this, &MouseWatch::finish);
}

void MouseWatch::report()
{
    auto &output = m_session->output();
    const auto &monitor = m_session->monitor();
    for (const auto &change : changesBetween(m_known, monitor.connectedDevices())) {
        const auto &id = change.device.id;
        if (const auto handle = monitor.deviceHandle(id)) {
            m_paths[id] = handle->path();
        }
        const auto &path = m_paths[id];
        const bool written = m_session->options().json
                                 ? output.printJSON(changeJSON(change, path))
                                 : output.print(changeLine(change, m_session->terminal()));
        if (!written) {
            finish();
            return;
        }
        if (change.kind == MouseChange::Kind::detached) {
            m_paths.erase(id);
        }
    }
    m_known = monitor.connectedDevices();
}

void MouseWatch::finish()
{
    if (m_reader) {
        m_reader->setEnabled(false);
    }
    m_promise.finish();
}

} // namespace kelmoth
