#pragma once

#include "Core/HID/DeviceManager.h"
#include "Core/Services/Preferences.h"
#include "Platform/Notifications.h"

#include <QObject>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace kelmoth {

/// Notifies the user when the battery of the configured mouse runs low: once at 15 % and once at 5 % of each
/// discharge. It uses the readings of HIDMonitor and requests none. Main thread.
class BatteryNotifier : public QObject {
    Q_OBJECT

public:
    /// Null `notifications` disable it. The other collaborators outlive it.
    BatteryNotifier(HIDMonitor &hidMonitor, const DeviceManager &deviceManager,
                    const Preferences &preferences, std::shared_ptr<NotificationService> notifications);

private:
    /// Identifies a mouse, also after it was detached and attached again.
    using Identity = std::pair<std::uint16_t, std::optional<std::string>>; ///< product ID, serial number

    void takeReading(const QUuid &id);
    void takeReading(const RazerDevice &device);
    void notify(const RazerDevice &device, Int level, bool isCritical);
    void reset(std::optional<Int> remaining);

    HIDMonitor &m_hidMonitor;
    const DeviceManager &m_deviceManager;
    const Preferences &m_preferences;
    const std::shared_ptr<NotificationService> m_notifications;
    std::optional<Identity> m_mouse;    ///< mouse of the last reading
    std::optional<Int> m_notifiedLevel; ///< last threshold notified of in this discharge
};

} // namespace kelmoth
