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

/// Tells the user when the battery of the mouse that is configured runs low: once at 15 % and once at 5 %,
/// each way down. It looks at readings when they come and asks for none. Main thread.
class BatteryNotifier : public QObject {
    Q_OBJECT

public:
    /// Without `notifications` nothing is told. The others outlive it.
    BatteryNotifier(HIDMonitor &hidMonitor, const DeviceManager &deviceManager,
                    const Preferences &preferences, std::shared_ptr<NotificationService> notifications);

private:
    /// A mouse, also when it comes back after it has been away.
    using Identity = std::pair<std::uint16_t, std::optional<std::string>>; ///< product ID, serial number

    void take(const QUuid &id);
    void take(const RazerDevice &device);
    void tell(const RazerDevice &device, Int level, bool isCritical);
    void forget(std::optional<Int> remaining);

    HIDMonitor &m_hidMonitor;
    const DeviceManager &m_deviceManager;
    const Preferences &m_preferences;
    const std::shared_ptr<NotificationService> m_notifications;
    std::optional<Identity> m_mouse; ///< the one that the last reading was of
    std::optional<Int> m_told;       ///< the threshold that was told of on this way down
};

} // namespace kelmoth
