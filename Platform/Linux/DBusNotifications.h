#pragma once

#include "Platform/Notifications.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QObject>

#include <optional>

namespace kelmoth {

/// Notifications by org.freedesktop.Notifications. Main thread.
class DBusNotifications : public QObject, public NotificationService {
    Q_OBJECT

public:
    explicit DBusNotifications(QDBusConnection bus);

    void show(const Notification &notification) override;
    void withdraw() override;

private:
    void send(const Notification &notification);
    void take(const QDBusPendingCall &reply);

    QDBusConnection m_bus;
    uint m_shown = 0; ///< notification ID from the service; 0: none
    bool m_isAwaited = false;
    std::optional<Notification> m_next; ///< to show once the service has answered
    bool m_isWithdrawn = false;         ///< to close once the service has answered
};

} // namespace kelmoth
