#pragma once

#include "Core/Device/DeviceState.h"
#include "Core/Device/RazerDevice.h"
#include "Core/HID/DeviceReader.h"
#include "Core/HID/HIDMonitor.h"
#include "Core/HID/SavedSettings.h"
#include "Core/HID/WriteResult.h"
#include "Core/Services/OwnThread.h"
#include "Core/Services/ToastManager.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QPromise>

#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kelmoth {

/// The only owner of the chosen mouse and of its settings: chooses the mouse, loads its saved settings, reads
/// it, writes changes to it, publishes and saves the result. It publishes and saves only what the mouse has
/// answered or accepted. Main thread.
///
/// Each published value emits its signal after every assignment, also of an equal value. Signals are emitted
/// once all related values are changed and saved. A slot may call a writer or delete the manager.
class DeviceManager : public QObject {
    Q_OBJECT

public:
    /// The application's instance, on the shared monitor and toasts; created on first use, destroyed with the
    /// application object.
    static DeviceManager &shared();

    /// The collaborators outlive the manager. The monitor is started by whoever owns it.
    DeviceManager(HIDMonitor &hidMonitor, ToastManager &toastManager, std::shared_ptr<UserDefaults> defaults,
                  QObject *parent = nullptr);

    /// The mouse chosen for configuration; it may be one that cannot be configured. None when none is
    /// attached.
    const std::optional<RazerDevice> &connectedDevice() const { return m_connectedDevice; }

    /// The settings of the mouse last chosen, also after it has gone.
    const DeviceState &deviceState() const { return m_deviceState; }

    /// Whether there is a chosen mouse and it can be configured.
    bool isConnected() const { return m_isConnected; }

    /// The lift-off level last read: 0 low, 1 medium, 2 high; none while unknown.
    const std::optional<Int> &liftOffLevel() const { return m_liftOffLevel; }

    /// Whether the mouse is being read.
    bool isSyncing() const { return m_isSyncing; }

    /// What the last full read of the chosen mouse got no usable answer to. Empty before the first.
    const UnansweredItems &unanswered() const { return m_lastRead.unanswered; }

    /// Whether the last full read of the chosen mouse got any answer.
    bool isAnswering() const { return m_lastRead.anyAnswer; }

    /// The device to configure: the first configurable one, else the first; none for an empty list. With a
    /// product ID, only devices with that ID count.
    static std::optional<RazerDevice> preferredDevice(std::span<const RazerDevice> devices,
                                                      std::optional<std::uint16_t> productID = {});

    /// Restricts the choice to mice with this product ID (none: any) from the next device list on.
    void configureProduct(std::optional<std::uint16_t> productID) { m_productID = productID; }

    /// The result of the first full read of the chosen mouse; waits until that read has ended. None when no
    /// configurable mouse is attached, or it is detached meanwhile.
    QCoro::Task<std::optional<DeviceReading>> firstReading();

    /// Reads the chosen mouse into the published settings and saves them: the DPI stages, and when `full`
    /// everything that can be read. During a read or a write, a full read is deferred until that ends, and
    /// any other is dropped. Shows no messages.
    QCoro::Task<void> refreshFromDevice(bool full);

    // The writers. Each returns true when the mouse accepted the change and the published settings hold it.
    // Values that the panel's controls cannot produce, and calls while the manager is busy, fail silently;
    // other failures show a toast. The forms that begin with "change" report to the caller only.

    /// Sets the DPI of a stage, 0-based; of the active one when none is given. Multiples of 100 from 100 to
    /// the most that the model accepts.
    QCoro::Task<bool> setDPI(Int dpi, std::optional<Int> stage);
    QCoro::Task<WriteResult> changeDPI(Int dpi, std::optional<Int> stage);

    /// Makes a stage the active one, 0-based.
    QCoro::Task<bool> setDPIStage(Int stage);
    QCoro::Task<WriteResult> changeDPIStage(Int stage);

    /// Sets the lighting of a zone: brightness first; restores it when the effect is refused.
    QCoro::Task<bool> setRGB(RGBZone zone, RGBSetting setting);
    QCoro::Task<WriteResult> changeRGB(RGBZone zone, RGBSetting setting);

    /// Assigns a button in profile 0 and also in `profile`, in the hypershift layer when `hypershift`. True
    /// only when the mouse reads back the same bytes. The left button cannot be reassigned.
    QCoro::Task<bool> setButtonMapping(MouseButton button, ButtonAction action, Int profile, bool hypershift);
    QCoro::Task<WriteResult> changeButtonMapping(MouseButton button, ButtonAction action, Int profile,
                                                 bool hypershift);

    /// Sets the lift-off distance, 0 to 2. Publishes the level that the mouse reads back, whichever it is.
    QCoro::Task<bool> setLiftOff(Int level);
    QCoro::Task<WriteResult> changeLiftOff(Int level);

Q_SIGNALS:
    void connectedDeviceChanged();
    void deviceStateChanged();
    void isConnectedChanged();
    void liftOffLevelChanged();
    void isSyncingChanged();

private:
    class SyncingSection;
    class WritingSection;

    void setupObservers();
    void takeDevices(const std::vector<RazerDevice> &devices);
    bool isCurrent(const RazerDevice &device) const;
    bool isBusy() const
    {
        assertOwnThread(*this);
        return m_isSyncing || m_isWriting;
    }
    std::optional<RazerDevice> configurableDevice() const;
    void saveSettings();
    void startFullRefresh();
    void runPendingRefresh();
    static QCoro::Task<bool> showMessage(QPointer<DeviceManager> self, QCoro::Task<WriteResult> change);
    QCoro::Task<WriteResult> writeDPI(DeviceState state, RazerDevice device, std::string message);
    void endFirstReading();

    void commit(DeviceState state);
    void setIsSyncing(bool syncing);
    using Signal = void (DeviceManager::*)();
    void notify(std::initializer_list<Signal> signals);

    std::optional<RazerDevice> m_connectedDevice;
    DeviceState m_deviceState = DeviceState::defaultState();
    bool m_isConnected = false;
    std::optional<Int> m_liftOffLevel;
    bool m_isSyncing = false;
    bool m_pendingFullRefresh = false; ///< a full read was deferred
    bool m_isWriting = false;
    std::optional<std::uint16_t> m_productID; ///< choose only this product; any when absent
    DeviceReading m_lastRead;                 ///< the last full read of the chosen mouse
    bool m_hasRead = false;                   ///< whether `m_lastRead` is valid
    std::vector<QPromise<void>> m_readPromises;
    HIDMonitor &m_hidMonitor;
    ToastManager &m_toastManager;
    SavedSettings m_savedSettings;
};

} // namespace kelmoth
