// Battery polling: a readable battery is read when the mouse is listed, every five minutes, and on request.

#include "Core/HID/HIDMonitor.h"
#include "Core/HID/RazerProtocol.h"
#include "Core/Services/OwnThread.h"

#include <QCoroFuture>
#include <QPointer>
#include <QPromise>

#include <algorithm>
#include <chrono>

namespace kelmoth {

namespace {

constexpr std::chrono::seconds pollInterval{300};

/// The result of a task, or false when the deadline passes first.
QFuture<bool> endedBy(QCoro::Task<bool> task, QDeadlineTimer deadline)
{
    const auto promise = std::make_shared<QPromise<bool>>();
    promise->start();
    const auto end = [promise](bool result) {
        promise->addResult(result, 0);
        promise->finish();
    };
    task.then(end);
    if (!deadline.isForever()) {
        QTimer::singleShot(std::chrono::milliseconds(deadline.remainingTime()), [end] { end(false); });
    }
    return promise->future();
}

} // namespace

bool HIDMonitor::hasReadableBattery(const RazerDevice &device)
{
    return device.isConfigurable() && device.capabilities().hasBattery;
}

bool HIDMonitor::isBatteryMonitored(const QUuid &id) const
{
    assertOwnThread(*this);
    return m_batteryMonitors.contains(id);
}

void HIDMonitor::startBatteryMonitoring(const RazerDevice &device)
{
    auto timer = std::make_unique<QTimer>(this);
    timer->setTimerType(Qt::VeryCoarseTimer); // whole seconds, to coalesce wake-ups
    connect(timer.get(), &QTimer::timeout, this, [this, device] { readBatteryLevel(device); });
    timer->start(pollInterval);
    m_batteryMonitors[device.id] = std::move(timer);
    readBatteryLevel(device);
}

void HIDMonitor::readBatteryLevel(const RazerDevice &device)
{
    if (hasReadableBattery(device)) {
        updateBattery(device);
    }
}

QCoro::Task<bool> HIDMonitor::readBattery(RazerDevice device, QDeadlineTimer deadline)
{
    if (!hasReadableBattery(device)) {
        co_return false;
    }
    QFuture<bool> ended = endedBy(updateBattery(device), deadline);
    const bool isAnswered = co_await ended;
    co_return isAnswered;
}

QCoro::Task<bool> HIDMonitor::updateBattery(RazerDevice device)
{
    assertOwnThread(*this);
    const QPointer<HIDMonitor> self(this);
    const bool isAnswered = co_await askBattery(device);
    if (self) {
        Q_EMIT batteryReadFinished(device.id);
    }
    co_return isAnswered;
}

QCoro::Task<bool> HIDMonitor::askBattery(RazerDevice device)
{
    const QPointer<HIDMonitor> self(this);
    const RazerCommand getLevel = command::getBatteryLevel{};
    const std::optional<Data> levelResponse = co_await send(getLevel, device);
    const auto level = levelResponse ? RazerProtocol::parseBatteryLevel(*levelResponse) : std::nullopt;
    if (!level || !self) {
        co_return false;
    }
    bool isCharging = false;
    if (device.capabilities().reportsCharging) {
        const RazerCommand getStatus = command::getChargingStatus{};
        const std::optional<Data> status = co_await send(getStatus, device);
        isCharging = status && RazerProtocol::parseChargingStatus(*status);
        if (!self) {
            co_return false;
        }
    }
    // Search again: observers of the first change may have changed the list.
    for (const bool isLevel : {true, false}) {
        const auto listed = std::ranges::find(m_connectedDevices, device.id, &RazerDevice::id);
        if (listed == m_connectedDevices.end()) {
            co_return false;
        }
        if (isLevel) {
            listed->batteryLevel = level;
        } else {
            listed->isCharging = isCharging;
        }
        Q_EMIT connectedDevicesChanged();
        if (!self) {
            co_return false;
        }
    }
    co_return true;
}

} // namespace kelmoth
