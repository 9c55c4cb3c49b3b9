#pragma once

#include "Core/Device/RazerDevice.h"
#include "Core/HID/RazerCommand.h"
#include "Core/HID/USBRazerDevice.h"
#include "Platform/HID.h"
#include "Platform/Sleeper.h"
#include "Platform/USB.h"

#include <QCoroTask>
#include <QDeadlineTimer>
#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace kelmoth {

/// Lists the attached mice and sends commands to them. Main thread. Transfers run one at a time, in FIFO
/// order, on a thread of their own named "com.kelmoth.hid".
class HIDMonitor : public QObject {
    Q_OBJECT

public:
    /// The application's monitor, on the installed platform; created on first use, destroyed with the
    /// application object.
    static HIDMonitor &shared();

    /// `hid` enumerates the mice, `usb` opens them, `sleeper` waits between transfers.
    HIDMonitor(std::shared_ptr<HIDService> hid, std::shared_ptr<USBService> usb,
               std::shared_ptr<Sleeper> sleeper, QObject *parent = nullptr);

    /// Ends the transfers as `endTransfers` does, and waits for the one in progress.
    ~HIDMonitor() override;

    /// The accepted devices in attach order. The USB transport of a device is opened on the transfer thread,
    /// before its first command: listing never waits for hardware.
    const std::vector<RazerDevice> &connectedDevices() const { return m_connectedDevices; }

    /// True between a successful start and the stop.
    bool isMonitoring() const { return m_isMonitoring; }

    /// Lists the mice that are present and starts watching; logs the outcome. No effect when already
    /// watching. Unless `watchesBatteries`, batteries are read only on request.
    void startMonitoring(bool watchesBatteries = true);

    /// Stops watching. The list, the transports and the battery timers stay.
    void stopMonitoring();

    /// Cancels all commands before the program exits: queued ones are dropped, and a running one stops after
    /// its current transfer. They count as unanswered. Irreversible. Returns at once. Any thread.
    void endTransfers();

    /// Sends one command. The answer is the report with which the mouse accepted it, 90 or 91 bytes; none
    /// when it was rejected or unanswered, or the device takes no commands. Uses USB first, and HID feature
    /// reports when USB gives no answer. Resumes on the main thread.
    QCoro::Task<std::optional<Data>> send(RazerCommand command, RazerDevice device);

    /// The same; tells rejected commands from those that were unanswered or could not be sent.
    QCoro::Task<TransactResult> transact(RazerCommand command, RazerDevice device);

    /// Reads battery and charging status into the published list; returns at once. No effect for a device
    /// without a readable battery.
    void readBatteryLevel(const RazerDevice &device);

    /// The same, awaitable, until `deadline` at most. True when the mouse has answered and the list is
    /// updated.
    QCoro::Task<bool> readBattery(RazerDevice device, QDeadlineTimer deadline);

    /// Whether the device has a readable battery.
    static bool hasReadableBattery(const RazerDevice &device);

    /// Whether the battery of the listed device with this `id` is read at intervals.
    bool isBatteryMonitored(const QUuid &id) const;

    /// The HID interface of a listed device; none once it is detached.
    std::shared_ptr<HIDDevice> deviceHandle(const QUuid &id) const;

Q_SIGNALS:
    /// Emitted after each change of the list, of a battery level and of a charging status.
    void connectedDevicesChanged();
    void isMonitoringChanged();
    /// A battery reading of a device has ended. The list is updated if the mouse answered.
    void batteryReadFinished(const QUuid &id);

private:
    void deviceConnected(const std::shared_ptr<HIDDevice> &handle);
    void deviceDisconnected(const std::shared_ptr<HIDDevice> &handle);
    void openTransport(const RazerDevice &device);
    void startBatteryMonitoring(const RazerDevice &device);
    QCoro::Task<bool> updateBattery(RazerDevice device);
    QCoro::Task<bool> askBattery(RazerDevice device);
    void setIsMonitoring(bool monitoring);

    /// State for the transfer thread. Shared with its jobs, so that a running job may outlive the monitor.
    struct Transports;

    std::shared_ptr<HIDService> m_hid;
    std::shared_ptr<USBService> m_usb;
    std::shared_ptr<Sleeper> m_sleeper;
    std::vector<RazerDevice> m_connectedDevices;
    bool m_isMonitoring = false;
    bool m_watchesBatteries = true;
    std::unique_ptr<HIDManager> m_manager;
    std::shared_ptr<Transports> m_transports;
    std::map<QUuid, std::unique_ptr<QTimer>> m_batteryMonitors;
    QThreadPool m_queue;
};

} // namespace kelmoth
