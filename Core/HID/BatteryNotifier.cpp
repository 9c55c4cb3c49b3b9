#include "Core/HID/BatteryNotifier.h"

#include "Core/Services/L10n.h"

#include <algorithm>

namespace kelmoth {

namespace {

constexpr Int lowLevel = 15; // percent
constexpr Int criticalLevel = 5;

/// Hysteresis: a rise by less, in percent, is measurement noise.
constexpr Int recovery = 5;

} // namespace

BatteryNotifier::BatteryNotifier(HIDMonitor &hidMonitor, const DeviceManager &deviceManager,
                                 const Preferences &preferences,
                                 std::shared_ptr<NotificationService> notifications)
    : m_hidMonitor(hidMonitor),
      m_deviceManager(deviceManager),
      m_preferences(preferences),
      m_notifications(std::move(notifications))
{
    if (m_notifications) {
        // Not on connectedDevicesChanged: the list then has the new level, but the old charging status.
        connect(&m_hidMonitor, &HIDMonitor::batteryReadFinished, this,
                qOverload<const QUuid &>(&BatteryNotifier::takeReading));
    }
}

void BatteryNotifier::takeReading(const QUuid &id)
{
    const auto &devices = m_hidMonitor.connectedDevices();
    const auto device = std::ranges::find(devices, id, &RazerDevice::id);
    if (device != devices.end() && m_deviceManager.connectedDevice() == *device) {
        takeReading(*device);
    }
}

void BatteryNotifier::takeReading(const RazerDevice &device)
{
    if (!device.batteryLevel) {
        return;
    }
    const Identity mouse{device.productID, device.serialNumber};
    const Int level = *device.batteryLevel;
    const bool isAnother = std::exchange(m_mouse, mouse) != mouse;
    // Some mice do not report that they charge.
    if (isAnother || device.isCharging || level >= lowLevel + recovery) {
        reset(std::nullopt);
    } else if (m_notifiedLevel == criticalLevel && level >= criticalLevel + recovery) {
        reset(lowLevel);
    }
    const Int threshold = level <= criticalLevel ? criticalLevel : lowLevel;
    if (!device.isCharging && level <= threshold && threshold < m_notifiedLevel.value_or(lowLevel + 1)) {
        m_notifiedLevel = threshold;
        notify(device, level, threshold == criticalLevel);
    }
}

void BatteryNotifier::notify(const RazerDevice &device, Int level, bool isCritical)
{
    if (m_preferences.showsBatteryNotifications()) {
        m_notifications->show({.title = L10n::text(isCritical ? "Battery almost empty" : "Battery low"),
                               .body = device.name() + " · " + std::to_string(level) + " %",
                               .isCritical = isCritical});
    }
}

/// Withdraws the notification; `remaining` is the threshold that still counts as notified of.
void BatteryNotifier::reset(std::optional<Int> remaining)
{
    if (std::exchange(m_notifiedLevel, remaining)) {
        m_notifications->withdraw();
    }
}

} // namespace kelmoth
