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

/// Knows which mice are attached and how to reach them. Main thread, but for the transfers, which run one
/// at a time, first come first served, on a thread of their own named "com.kelmoth.hid".
class HIDMonitor : public QObject {
    Q_OBJECT

public:
    /// The application's one monitor, on the installed platform; made on first use, gone with the
    /// application object.
    static HIDMonitor &shared();

    /// `hid` finds the mice, `usb` opens the way to them, `sleeper` keeps the pauses between transfers.
    HIDMonitor(std::shared_ptr<HIDService> hid, std::shared_ptr<USBService> usb,
               std::shared_ptr<Sleeper> sleeper, QObject *parent = nullptr);

    /// Ends the transfers as `endTransfers` does, and waits for the one under way.
    ~HIDMonitor() override;

    /// The accepted devices in attach order. The USB transport of a device is opened on the transfer thread,
    /// ahead of every command that is sent to it: the list never waits for hardware.
    const std::vector<RazerDevice> &connectedDevices() const { return m_connectedDevices; }

    /// True between a successful start and the stop.
    bool isMonitoring() const { return m_isMonitoring; }

    /// Lists the mice that are present and begins to watch; logs the outcome. Nothing when already watching.
    /// Unless `watchesBatteries`, a battery is read only when it is asked for.
    void startMonitoring(bool watchesBatteries = true);

    /// Ends watching. The list, the transports and the battery timers stay as they are.
    void stopMonitoring();

    /// Ends all commands for good, for a program that is about to end: those that have not started are
    /// dropped, and one that has sends nothing more after the transfer under way. What was not answered by
    /// then counts as unanswered. Returns at once. Any thread.
    void endTransfers();

    /// Sends one command. The answer is a report that the mouse accepted the command with, 90 or 91 bytes;
    /// none when it was rejected, went unanswered, or the device takes no commands. The USB path first; when
    /// that gives no answer at all, HID feature reports. Resumes on the main thread.
    QCoro::Task<std::optional<Data>> send(RazerCommand command, RazerDevice device);

    /// The same, with a command that was rejected told from one that went unanswered or could not be sent.
    QCoro::Task<TransactResult> transact(RazerCommand command, RazerDevice device);

    /// Reads battery and charging status into the published list; returns at once. Nothing for a device
    /// without a battery that can be read.
    void readBatteryLevel(const RazerDevice &device);

    /// The same, to be waited for, until `deadline` at most. True when the mouse has answered and the list
    /// holds what it said.
    QCoro::Task<bool> readBattery(RazerDevice device, QDeadlineTimer deadline);

    /// Whether the battery of such a device can be read and is watched.
    static bool hasReadableBattery(const RazerDevice &device);

    /// Whether the battery of the listed device with this `id` is read at intervals.
    bool isBatteryMonitored(const QUuid &id) const;

    /// The HID interface behind a listed device; none once it has gone.
    std::shared_ptr<HIDDevice> deviceHandle(const QUuid &id) const;

Q_SIGNALS:
    /// After each change of the list, of a device's battery level and of its charging status.
    void connectedDevicesChanged();
    void isMonitoringChanged();
    /// A battery reading of a device has come to its end: with an answer, which the list then holds, or
    /// without.
    void batteryReadFinished(const QUuid &id);

private:
    void deviceConnected(const std::shared_ptr<HIDDevice> &handle);
    void deviceDisconnected(const std::shared_ptr<HIDDevice> &handle);
    void openTransport(const RazerDevice &device);
    void startBatteryMonitoring(const RazerDevice &device);
    QCoro::Task<bool> updateBattery(RazerDevice device);
    QCoro::Task<bool> askBattery(RazerDevice device);
    void setIsMonitoring(bool monitoring);

    /// What the transfer thread needs of the monitor. Shared with the jobs on that thread, so that one that
    /// still runs outlives a monitor that goes.
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
