#include "Core/HID/DeviceManager.h"

#include "Core/Services/SharedInstance.h"
#include "Platform/Platform.h"

#include <QCoroFuture>

#include <utility>

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

/// Observes the device list. Each published list is queued as a copy and handled in order.
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
    assertOwnThread(*this);
    const auto previous = m_connectedDevice ? std::optional(m_connectedDevice->id) : std::nullopt;
    m_connectedDevice = preferredDevice(devices, m_productID);
    m_isConnected = m_connectedDevice && m_connectedDevice->isConfigurable();
    if (!m_isConnected || m_connectedDevice->id == previous) {
        if (!m_isConnected) {
            m_hasRead = false;
            endFirstReading();
        }
        notify({&DeviceManager::connectedDeviceChanged, &DeviceManager::isConnectedChanged});
        return;
    }
    m_deviceState = m_savedSettings.stateForDevice(*m_connectedDevice);
    m_liftOffLevel = std::nullopt;
    m_lastRead = {};
    m_hasRead = false;
    if (previous) {
        endFirstReading(); // of the previous mouse
    }
    startFullRefresh();
    notify({&DeviceManager::connectedDeviceChanged, &DeviceManager::isConnectedChanged,
            &DeviceManager::deviceStateChanged, &DeviceManager::liftOffLevelChanged});
}

std::optional<RazerDevice> DeviceManager::preferredDevice(std::span<const RazerDevice> devices,
                                                          std::optional<std::uint16_t> productID)
{
    std::optional<RazerDevice> first;
    for (const auto &device : devices) {
        const bool matches = !productID || device.productID == *productID;
        if (matches && device.isConfigurable()) {
            return device;
        }
        if (matches && !first) {
            first = device;
        }
    }
    return first;
}

QCoro::Task<std::optional<DeviceReading>> DeviceManager::firstReading()
{
    assertOwnThread(*this);
    const QPointer<DeviceManager> self(this);
    if (!m_hasRead) {
        auto &promise = m_readPromises.emplace_back();
        promise.start();
        QFuture<void> ended = promise.future();
        co_await ended;
    }
    co_return self &&m_hasRead ? std::optional(m_lastRead) : std::nullopt;
}

/// Resumes the coroutines that wait for the first full read.
void DeviceManager::endFirstReading()
{
    for (auto &promise : std::exchange(m_readPromises, {})) {
        promise.finish();
    }
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

/// Emits the signals. Call it last: a slot may destroy the manager.
void DeviceManager::notify(std::initializer_list<Signal> signals)
{
    assertOwnThread(*this);
    const QPointer<DeviceManager> self(this);
    for (const Signal signal : signals) {
        if (self) {
            Q_EMIT(this->*signal)();
        }
    }
}

} // namespace kelmoth
