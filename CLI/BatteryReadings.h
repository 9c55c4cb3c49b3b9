#pragma once

#include "CLI/MouseSummary.h"
#include "Core/HID/HIDMonitor.h"

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QTimer>
#include <QUuid>

#include <chrono>
#include <set>

namespace kelmoth {

/// Has the batteries of mice read, and waits for that. Main thread.
class BatteryReadings : public QObject {
    Q_OBJECT

public:
    /// Long enough for several mice, of which one never answers.
    static constexpr std::chrono::seconds limit{5};

    /// Of `mice`, those are asked that can be configured and have a battery.
    BatteryReadings(HIDMonitor &monitor, const std::vector<MouseSummary> &mice);

    /// Finished once each mouse has answered, has failed to or has gone, and at the latest when the limit
    /// has passed.
    QFuture<void> finished() const { return m_promise.future(); }

private:
    void settle(const QUuid &id);
    void dropMissing();
    void finishIfSettled();
    void finish();

    const HIDMonitor &m_monitor;
    std::set<QUuid> m_pending;
    QTimer m_limit;
    QPromise<void> m_promise;
};

} // namespace kelmoth
