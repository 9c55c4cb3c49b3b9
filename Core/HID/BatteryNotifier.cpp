#include "Core/HID/BatteryNotifier.h"

#include "Core/Services/L10n.h"

#include <algorithm>

namespace kelmoth {

namespace {

constexpr Int lowLevel = 15; // percent
constexpr Int criticalLevel = 5;

/// So much above a threshold the charge has risen; less is a reading that wavers.
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
        // Not as the list changes: that holds the level for a moment before it holds the charging status.
        connect(&m_hidMonitor, &HIDMonitor::batteryReadFinished, this,
                qOverload<const QUuid &>(&BatteryNotifier::take));
    }
}

void BatteryNotifier::take(const QUuid &id)
{
    const auto &devices = m_hidMonitor.connectedDevices();
    const auto device = std::ranges::find(devices, id, &RazerDevice::id);
    if (device != devices.end() && m_deviceManager.connectedDevice() == *device) {
        take(*device);
    }
}

void BatteryNotifier::take(const RazerDevice &device)
{
    if (!device.batteryLevel) {
        return;
    }
    const Identity mouse{device.productID, device.serialNumber};
    const Int level = *device.batteryLevel;
    const bool isAnother = std::exchange(m_mouse, mouse) != mouse;
    // Not every mouse says that it charges.
    if (isAnother || device.isCharging || level >= lowLevel + recovery) {
        forget(std::nullopt);
    } else if (m_told == criticalLevel && level >= criticalLevel + recovery) {
        forget(lowLevel);
    }
    const Int threshold = level <= criticalLevel ? criticalLevel : lowLevel;
    if (!device.isCharging && level <= threshold && threshold < m_told.value_or(lowLevel + 1)) {
        m_told = threshold;
        tell(device, level, threshold == criticalLevel);
    }
}

void BatteryNotifier::tell(const RazerDevice &device, Int level, bool isCritical)
{
    if (m_preferences.showsBatteryNotifications()) {
        m_notifications->show({.title = L10n::text(isCritical ? "Battery almost empty" : "Battery low"),
                               .body = device.name() + " · " + std::to_string(level) + " %",
                               .isCritical = isCritical});
    }
}

/// What was told holds no longer; of the way down `remaining` has been told.
void BatteryNotifier::forget(std::optional<Int> remaining)
{
    if (std::exchange(m_told, remaining)) {
        m_notifications->withdraw();
    }
}

} // namespace kelmoth
