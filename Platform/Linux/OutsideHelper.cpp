#include "Platform/Linux/OutsideHelper.h"

#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <deque>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace kelmoth {

/// This process's end of the socket.
class OutsideHelper::Exchange : public QObject {
public:
    Exchange(FileDescriptor socket, std::chrono::milliseconds timeout)
        : m_socket(std::move(socket)), m_notifier(m_socket.get(), QSocketNotifier::Read)
    {
        m_timeout.setSingleShot(true);
        m_timeout.setInterval(timeout);
        connect(&m_timeout, &QTimer::timeout, this, [this] { fail(ETIMEDOUT); });
        connect(&m_notifier, &QSocketNotifier::activated, this, &Exchange::receive);
    }

    void ask(char request, std::function<void(int)> answer)
    {
        m_waiting.push_back(std::move(answer));
        // EPIPE: the notifier reports it after the answers that the helper has left.
        if (::send(m_socket.get(), &request, 1, MSG_DONTWAIT | MSG_NOSIGNAL) != 1 && errno != EPIPE) {
            QMetaObject::invokeMethod(this, [this] { fail(EPIPE); }, Qt::QueuedConnection);
        }
        if (!m_timeout.isActive()) {
            m_timeout.start();
        }
    }

private:
    void receive()
    {
        int failure = 0;
        const auto size = ::recv(m_socket.get(), &failure, sizeof failure, MSG_DONTWAIT);
        if (size < 0) {
            return; // ECONNRESET precedes the end if the helper left a request unread
        }
        if (size != sizeof failure || m_waiting.empty()) {
            fail(EPIPE);
            return;
        }
        const auto answer = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (m_waiting.empty()) {
            m_timeout.stop();
        } else {
            m_timeout.start();
        }
        if (answer) {
            answer(failure);
        }
    }

    void fail(int failure)
    {
        m_timeout.stop();
        m_notifier.setEnabled(false);
        m_socket = {};
        for (const auto &answer : std::exchange(m_waiting, {})) {
            if (answer) {
                answer(failure);
            }
        }
    }

    FileDescriptor m_socket;
    QSocketNotifier m_notifier;
    QTimer m_timeout;
    std::deque<std::function<void(int)>> m_waiting;
};

OutsideHelper::OutsideHelper(const std::function<int(char)> &action, std::chrono::milliseconds timeout)
    : m_timeout(timeout)
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return;
    }
    m_socket = FileDescriptor(ends[0]);
    const FileDescriptor helpers(ends[1]);
    if (::fork() != 0) {
        return; // parent, or fork failed
    }
    ::close(ends[0]); // or `read` would never return 0
    ::setsid();       // detach what it starts from the terminal
    char request = 0;
    while (::read(helpers.get(), &request, 1) == 1) {
        const int failure = action(request);
        (void)::send(helpers.get(), &failure, sizeof failure, MSG_NOSIGNAL);
    }
    std::_Exit(0);
}

OutsideHelper::~OutsideHelper() = default;

void OutsideHelper::ask(char request, std::function<void(int)> answer)
{
    if (!m_exchange) {
        m_exchange = std::make_unique<Exchange>(std::move(m_socket), m_timeout);
    }
    m_exchange->ask(request, std::move(answer));
}

} // namespace kelmoth
