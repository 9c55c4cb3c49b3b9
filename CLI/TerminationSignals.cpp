#include "CLI/TerminationSignals.h"

#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace kelmoth {

TerminationSignals::TerminationSignals()
{
    sigset_t mask;
    sigemptyset(&mask);
    sigaddset(&mask, SIGINT);
    sigaddset(&mask, SIGTERM);
    m_descriptor = ::signalfd(-1, &mask, SFD_NONBLOCK | SFD_CLOEXEC);
    if (m_descriptor < 0) {
        return;
    }
    pthread_sigmask(SIG_BLOCK, &mask, &m_previousMask);
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &TerminationSignals::take);
}

TerminationSignals::~TerminationSignals()
{
    if (!isArmed()) {
        return;
    }
    m_notifier.reset();
    ::close(m_descriptor);
    pthread_sigmask(SIG_SETMASK, &m_previousMask, nullptr);
}

void TerminationSignals::take()
{
    signalfd_siginfo info;
    if (::read(m_descriptor, &info, sizeof info) == sizeof info) {
        Q_EMIT received();
    }
}

} // namespace kelmoth
