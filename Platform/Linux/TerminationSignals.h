#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <memory>

namespace kelmoth {

/// Turns SIGINT, SIGTERM and SIGHUP into events while it lives; those that the process was started to ignore
/// stay ignored. By handlers, not by a mask, which every program started from here would inherit. One at a
/// time; main thread, with the application object.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;
    TerminationSignals(const TerminationSignals &) = delete;
    TerminationSignals &operator=(const TerminationSignals &) = delete;

Q_SIGNALS:
    /// One of them came.
    void received();

private:
    static constexpr std::array signalNumbers{SIGINT, SIGTERM, SIGHUP};

    void take();

    std::array<struct sigaction, signalNumbers.size()> m_previous{};
    std::unique_ptr<QSocketNotifier> m_notifier; ///< none when the system gives no way to wait for them
};

} // namespace kelmoth
