#include "Platform/Linux/TerminationSignals.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace kelmoth {

namespace {

/// Descriptor to which the handler reports signals; -1 without an instance.
std::atomic<int> counter = -1;
static_assert(std::atomic<int>::is_always_lock_free); // a handler may not wait for a lock

void count(int)
{
    const int before = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(counter, &one, sizeof one);
    errno = before;
}

} // namespace

TerminationSignals::TerminationSignals()
{
    counter = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (counter < 0) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(counter, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &TerminationSignals::take);
    struct sigaction action{};
    action.sa_handler = count;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < signalNumbers.size(); ++i) {
        ::sigaction(signalNumbers[i], nullptr, &m_previous[i]);
        if (m_previous[i].sa_handler != SIG_IGN) {
            ::sigaction(signalNumbers[i], &action, nullptr);
        }
    }
}

TerminationSignals::~TerminationSignals()
{
    if (!m_notifier) {
        return;
    }
    for (std::size_t i = 0; i < signalNumbers.size(); ++i) {
        ::sigaction(signalNumbers[i], &m_previous[i], nullptr);
    }
    m_notifier.reset();
    ::close(counter.exchange(-1));
}

void TerminationSignals::take()
{
    std::uint64_t received = 0;
    if (::read(counter, &received, sizeof received) == sizeof received) {
        Q_EMIT this->received();
    }
}

} // namespace kelmoth
