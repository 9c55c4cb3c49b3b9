#include "CLI/BatteryReadings.h"

#include <algorithm>

namespace kelmoth {

BatteryReadings::BatteryReadings(HIDMonitor &monitor, const std::vector<MouseSummary> &mice)
    : m_monitor(monitor)
{
    m_promise.start();
    connect(&monitor, &HIDMonitor::batteryReadFinished, this, &BatteryReadings::settle);
    connect(&monitor, &HIDMonitor::connectedDevicesChanged, this, &BatteryReadings::dropMissing);
    for (const auto &mouse : mice) {
        if (mouse.isConfigurable() && HIDMonitor::hasReadableBattery(mouse.device)) {
            m_pending.insert(mouse.device.id);
            monitor.readBatteryLevel(mouse.device);
        }
    }
    connect(&m_limit, &QTimer::timeout, this, &BatteryReadings::finish);
    m_limit.setSingleShot(true);
    m_limit.start(limit);
    dropMissing();
}

void BatteryReadings::settle(const QUuid &id)
{
    m_pending.erase(id);
    finishIfSettled();
}

void BatteryReadings::dropMissing()
{
    const auto &listed = m_monitor.connectedDevices();
    std::erase_if(m_pending, [&listed](const QUuid &id) {
        return std::ranges::find(listed, id, &RazerDevice::id) == listed.end();
    });
    finishIfSettled();
}

void BatteryReadings::finishIfSettled()
{
    if (m_pending.empty()) {
        finish();
    }
}

void BatteryReadings::finish()
{
    m_limit.stop();
    m_promise.finish();
}

} // namespace kelmoth
