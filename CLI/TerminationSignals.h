#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <csignal>

namespace kelmoth {

/// Turns SIGINT and SIGTERM into events while it lives. To be made before any other thread starts, so that
/// none takes the signals. One at a time; main thread.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;
    TerminationSignals(const TerminationSignals &) = delete;
    TerminationSignals &operator=(const TerminationSignals &) = delete;

    /// False when the system gives no way to wait for signals: then they end the process as ever.
    bool isArmed() const { return m_notifier != nullptr; }

Q_SIGNALS:
    /// One of them came.
    void received();

private:
    void take();

    sigset_t m_previousMask{};
    int m_descriptor = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace kelmoth
