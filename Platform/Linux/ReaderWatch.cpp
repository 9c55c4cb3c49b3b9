#include "Platform/Linux/ReaderWatch.h"

#include <cstdint>
#include <sys/epoll.h>
#include <sys/socket.h>

namespace kelmoth {

namespace {

/// The event that shows that the reader is gone, besides EPOLLERR and EPOLLHUP, which are always reported. A
/// network peer that closes looks like one that only stops sending; a local one does not.
std::uint32_t signOfNoReader(int descriptor)
{
    int family = AF_UNSPEC;
    ::socklen_t size = sizeof family;
    const bool isSocket = ::getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &family, &size) == 0;
    return isSocket && family != AF_UNIX ? std::uint32_t{EPOLLRDHUP} : 0;
}

} // namespace

ReaderWatch::ReaderWatch(int descriptor) : m_hangUp(::epoll_create1(EPOLL_CLOEXEC))
{
    m_end.start();
    // Without EPOLLIN: a notifier of the descriptor itself would fire for every unread input.
    ::epoll_event event{.events = signOfNoReader(descriptor), .data = {}};
    if (::epoll_ctl(m_hangUp.get(), EPOLL_CTL_ADD, descriptor, &event) != 0) {
        return; // a file, which has no reader
    }
    m_reader = std::make_unique<QSocketNotifier>(m_hangUp.get(), QSocketNotifier::Read);
    QObject::connect(m_reader.get(), &QSocketNotifier::activated, m_reader.get(), [this] { end(); });
}

void ReaderWatch::end()
{
    if (m_reader) {
        m_reader->setEnabled(false);
    }
    m_end.finish();
}

} // namespace kelmoth
