#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <memory>

namespace kelmoth {

/// Turns SIGINT, SIGTERM and SIGHUP into events during its lifetime; signals ignored at the start stay
/// ignored. Uses handlers, not a mask, which child processes would inherit. One instance at a time; main
/// thread, with the application object.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;
    TerminationSignals(const TerminationSignals &) = delete;
    TerminationSignals &operator=(const TerminationSignals &) = delete;

Q_SIGNALS:
    /// A signal arrived.
    void received();

private:
    static constexpr std::array signalNumbers{SIGINT, SIGTERM, SIGHUP};

    void take();

    std::array<struct sigaction, signalNumbers.size()> m_previous{};
    std::unique_ptr<QSocketNotifier> m_notifier; ///< null when the eventfd could not be created
};

} // namespace kelmoth
