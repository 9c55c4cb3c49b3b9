// Reading the mouse. Values from the mouse override saved ones.

#include "Core/HID/DeviceManager.h"
#include "Core/HID/DeviceManagerSections.h"

namespace kelmoth {

QCoro::Task<void> DeviceManager::refreshFromDevice(bool full)
{
    assertOwnThread(*this);
    const auto device = configurableDevice();
    if (!device) {
        co_return;
    }
    if (isBusy()) {
        m_pendingFullRefresh = m_pendingFullRefresh || full;
        co_return;
    }
    const QPointer<DeviceManager> self(this);
    const SyncingSection syncing(this);
    if (!self) {
        co_return; // a slot destroyed the manager
    }
    DeviceReading reading = co_await readDevice(&m_hidMonitor, *device, m_deviceState, full);
    if (!self || !isCurrent(*device)) {
        co_return;
    }
    m_deviceState = reading.state;
    saveSettings();
    if (!full) {
        notify({&DeviceManager::deviceStateChanged});
        co_return;
    }
    m_liftOffLevel = reading.liftOffLevel;
    m_lastRead = std::move(reading);
    m_hasRead = true;
    endFirstReading();
    notify({&DeviceManager::liftOffLevelChanged, &DeviceManager::deviceStateChanged});
}

/// Starts a full read from the event loop.
void DeviceManager::startFullRefresh()
{
    QMetaObject::invokeMethod(this, [this] { refreshFromDevice(true); }, Qt::QueuedConnection);
}

/// Starts the deferred full read unless the manager is busy.
void DeviceManager::runPendingRefresh()
{
    if (m_pendingFullRefresh && !isBusy()) {
        m_pendingFullRefresh = false;
        startFullRefresh();
    }
}

} // namespace kelmoth
