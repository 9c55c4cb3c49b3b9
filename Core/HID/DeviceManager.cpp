#include "Core/HID/DeviceManager.h"

#include "Core/Services/SharedInstance.h"

#include <algorithm>

namespace kelmoth {

DeviceManager &DeviceManager::shared()
{
    return sharedInstance([] {
        return std::make_unique<DeviceManager>(HIDMonitor::shared(), ToastManager::shared(),
                                               Platform::current().userDefaults);
    });
}

DeviceManager::DeviceManager(HIDMonitor &hidMonitor, ToastManager &toastManager,
                             std::shared_ptr<UserDefaults> defaults, QObject *parent)
    : QObject(parent),
      m_hidMonitor(hidMonitor),
      m_toastManager(toastManager),
      m_savedSettings(std::move(defaults))
{
    setupObservers();
}

/// Follows the list of mice: each list that is published arrives here in its turn, as it was then.
void DeviceManager::setupObservers()
{
    const auto deliver = [this] {
        QMetaObject::invokeMethod(
            this, [this, devices = m_hidMonitor.connectedDevices()] { takeDevices(devices); },
            Qt::QueuedConnection);
    };
    connect(&m_hidMonitor, &HIDMonitor::connectedDevicesChanged, this, deliver);
    deliver();
}

void DeviceManager::takeDevices(const std::vector<RazerDevice> &devices)
{
    const auto previous = m_connectedDevice ? std::optional(m_connectedDevice->id) : std::nullopt;
    m_connectedDevice = preferredDevice(devices);
    m_isConnected = m_connectedDevice && m_connectedDevice->isConfigurable();
    if (!m_isConnected || m_connectedDevice->id == previous) {
        notify({&DeviceManager::connectedDeviceChanged, &DeviceManager::isConnectedChanged});
        return;
    }
    m_deviceState = m_savedSettings.stateForDevice(*m_connectedDevice);
    m_liftOffLevel = std::nullopt;
    m_unanswered = {};
    m_isAnswering = false;
    startFullRefresh();
    notify({&DeviceManager::connectedDeviceChanged, &DeviceManager::isConnectedChanged,
            &DeviceManager::deviceStateChanged, &DeviceManager::liftOffLevelChanged});
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

/// Publishes and saves what the mouse holds.
void DeviceManager::commit(DeviceState state)
{
    m_deviceState = std::move(state);
    saveSettings();
    notify({&DeviceManager::deviceStateChanged});
}

void DeviceManager::setIsSyncing(bool syncing)
{
    m_isSyncing = syncing;
    if (!syncing) {
        runPendingRefresh();
    }
    notify({&DeviceManager::isSyncingChanged});
}

/// The last thing that a function does here: the manager may have gone afterwards.
void DeviceManager::notify(std::initializer_list<Signal> signals)
{
    const QPointer<DeviceManager> self(this);
    for (const Signal signal : signals) {
        if (self) {
            Q_EMIT(this->*signal)();
        }
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
