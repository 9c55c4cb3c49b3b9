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

/// The one owner of the choice of mouse and of its settings: picks the mouse, loads what was saved for it,
/// reads it, writes changes to it, publishes and saves the result. Nothing is published or saved that the
/// mouse has not said or accepted. Main thread.
///
/// Each published value notifies after every assignment, also of an equal value. Whoever is notified finds
/// everything that belongs together changed and saved, and may do anything: call a writer, or delete the
/// manager.
class DeviceManager : public QObject {
    Q_OBJECT

public:
    /// The application's one instance, on the shared monitor and toasts; made on first use, gone with the
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

    /// What the last full read of the chosen mouse asked and was not answered. Empty before the first.
    const UnansweredItems &unanswered() const { return m_lastRead.unanswered; }

    /// Whether the last full read of the chosen mouse was answered at all.
    bool isAnswering() const { return m_lastRead.anyAnswer; }

    /// The device to configure: the first that can be, else the first at all; none for an empty list. With a
    /// product ID, among the devices that have it.
    static std::optional<RazerDevice> preferredDevice(std::span<const RazerDevice> devices,
                                                      std::optional<std::uint16_t> productID = {});

    /// Has the manager configure the mouse with this product ID, or with none any, from the next list of mice
    /// that it takes on.
    void configureProduct(std::optional<std::uint16_t> productID) { m_productID = productID; }

    /// The full read with which the manager begins with the mouse that it chooses, once that has ended; at
    /// once when it has. None when no mouse that can be configured is there, or it goes meanwhile.
    QCoro::Task<std::optional<DeviceReading>> firstReading();

    /// Reads the chosen mouse into the published settings and saves them: the DPI stages, and when `full`
    /// everything that can be read. While a read or a write runs, a full read is put off until it ends, and
    /// any other is dropped. Shows no messages.
    QCoro::Task<void> refreshFromDevice(bool full);

    // The writers. Each is true when the mouse accepted the change and the published settings hold it. They
    // refuse silently what the controls of the panel cannot ask for, and while the manager is busy; of other
    // failures the user is told. The forms that begin with "change" tell nobody but the caller.

    /// Sets the DPI of a stage, 0-based; of the active one when none is given. Multiples of 100 from 100 to
    /// the most that the model accepts.
    QCoro::Task<bool> setDPI(Int dpi, std::optional<Int> stage);
    QCoro::Task<WriteResult> changeDPI(Int dpi, std::optional<Int> stage);

    /// Makes a stage the active one, 0-based.
    QCoro::Task<bool> setDPIStage(Int stage);
    QCoro::Task<WriteResult> changeDPIStage(Int stage);

    /// Sets the lighting of a zone: its brightness first, and that back again when the rest is refused.
    QCoro::Task<bool> setRGB(RGBZone zone, RGBSetting setting);
    QCoro::Task<WriteResult> changeRGB(RGBZone zone, RGBSetting setting);

    /// Assigns a button in profile 0 and, when another is named, in that one too; for the hypershift layer
    /// when `hypershift`. True only when the mouse gives the same bytes back. The left button stays the left
    /// click.
    QCoro::Task<bool> setButtonMapping(MouseButton button, ButtonAction action, Int profile, bool hypershift);
    QCoro::Task<WriteResult> changeButtonMapping(MouseButton button, ButtonAction action, Int profile,
                                                 bool hypershift);

    /// Sets the lift-off distance, 0 to 2. Publishes what the mouse gives back, whatever it is.
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
    static QCoro::Task<bool> tell(QPointer<DeviceManager> self, QCoro::Task<WriteResult> change);
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
    bool m_pendingFullRefresh = false; ///< a full read was asked for while the manager was busy
    bool m_isWriting = false;
    std::optional<std::uint16_t> m_productID; ///< of the mouse to choose; any when absent
    DeviceReading m_lastRead;                 ///< the last full read of the chosen mouse
    bool m_isRead = false;                    ///< there has been one
    std::vector<QPromise<void>> m_awaitingRead;
    HIDMonitor &m_hidMonitor;
    ToastManager &m_toastManager;
    SavedSettings m_savedSettings;
};

} // namespace kelmoth
