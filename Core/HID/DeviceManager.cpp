#include "Core/HID/DeviceManager.h"

#include <QCoreApplication>

#include <algorithm>

namespace kelmoth {

DeviceManager &DeviceManager::shared()
{
    static QPointer<DeviceManager> manager;
    if (!manager) {
        manager = new DeviceManager(HIDMonitor::shared(), ToastManager::shared(),
                                    Platform::current().userDefaults, QCoreApplication::instance());
    }
    return *manager;
}

DeviceManager::DeviceManager(HIDMonitor &hidMonitor, ToastManager &toastManager,
                             std::shared_ptr<UserDefaults> defaults, QObject *parent)
    : QObject(parent),
      m_hidMonitor(&hidMonitor),
      m_toastManager(&toastManager),
      m_savedSettings(std::move(defaults))
{
    setupObservers();
}

/// Follows the list of mice: each list that is published arrives here in its turn, as it was then.
void DeviceManager::setupObservers()
{
    const auto deliver = [this] {
        QMetaObject::invokeMethod(
            this, [this, devices = m_hidMonitor->connectedDevices()] { takeDevices(devices); },
            Qt::QueuedConnection);
    };
    connect(m_hidMonitor, &HIDMonitor::connectedDevicesChanged, this, deliver);
    deliver();
}

void DeviceManager::takeDevices(const std::vector<RazerDevice> &devices)
{
    const auto previous = m_connectedDevice ? std::optional(m_connectedDevice->id) : std::nullopt;
    m_connectedDevice = preferredDevice(devices);
    Q_EMIT connectedDeviceChanged();
    m_isConnected = m_connectedDevice && m_connectedDevice->isConfigurable();
    Q_EMIT isConnectedChanged();
    if (!m_isConnected || m_connectedDevice->id == previous) {
        return;
    }
    setDeviceState(m_savedSettings.stateForDevice(*m_connectedDevice));
    setLiftOffLevel(std::nullopt);
    m_unanswered = {};
    m_isAnswering = false;
    startFullRefresh();
}

std::optional<RazerDevice> DeviceManager::preferredDevice(std::span<const RazerDevice> devices)
{
    const auto configurable = std::ranges::find_if(devices, &RazerDevice::isConfigurable);
    if (configurable != devices.end()) {
        return *configurable;
    }
    return devices.empty() ? std::nullopt : std::optional(devices.front());
}

bool DeviceManager::isCurrent(const RazerDevice &device) const
{
    return m_connectedDevice && *m_connectedDevice == device;
}

std::optional<RazerDevice> DeviceManager::configurableDevice() const
{
    return m_connectedDevice && m_connectedDevice->isConfigurable() ? m_connectedDevice : std::nullopt;
}

void DeviceManager::saveSettings()
{
    if (m_connectedDevice) {
        m_savedSettings.save(m_deviceState, *m_connectedDevice);
    }
}

void DeviceManager::setDeviceState(DeviceState state)
{
    m_deviceState = std::move(state);
    Q_EMIT deviceStateChanged();
}

void DeviceManager::setLiftOffLevel(std::optional<Int> level)
{
    m_liftOffLevel = level;
    Q_EMIT liftOffLevelChanged();
}

void DeviceManager::setIsSyncing(bool syncing)
{
    m_isSyncing = syncing;
    Q_EMIT isSyncingChanged();
    if (!syncing) {
        runPendingRefresh();
    }
}

QVariant DeviceManager::connectedDeviceVariant() const
{
    return m_connectedDevice ? QVariant::fromValue(*m_connectedDevice) : QVariant();
}

QVariant DeviceManager::liftOffLevelVariant() const
{
    return m_liftOffLevel ? QVariant::fromValue<qlonglong>(*m_liftOffLevel) : QVariant();
}

} // namespace kelmoth
