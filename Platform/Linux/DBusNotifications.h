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
    uint m_shown = 0; ///< the service's number of the notification; 0: none
    bool m_isAwaited = false;
    std::optional<Notification> m_next; ///< to be shown once the service has answered
    bool m_isWithdrawn = false;         ///< to be taken away once the service has answered
};

} // namespace kelmoth
