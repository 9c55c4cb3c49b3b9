#include "Platform/Linux/DBusNotifications.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace kelmoth {

namespace {

constexpr uchar normalUrgency = 1;
constexpr uchar criticalUrgency = 2;
constexpr int serversOwnTimeout = -1;

QDBusMessage notificationCall(const QString &method)
{
    const auto service = QStringLiteral("org.freedesktop.Notifications");
    return QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"), service,
                                          method);
}

} // namespace

DBusNotifications::DBusNotifications(QDBusConnection bus) : m_bus(std::move(bus)) {}

void DBusNotifications::show(const Notification &notification)
{
    m_isWithdrawn = false;
    // Without the ID of the last notification the next would not replace it.
    if (m_isAwaited) {
        m_next = notification;
    } else {
        send(notification);
    }
}

void DBusNotifications::withdraw()
{
    m_next.reset();
    if (m_isAwaited) {
        m_isWithdrawn = true; // its ID is not known yet
    } else if (const auto shown = std::exchange(m_shown, 0); shown != 0) {
        auto call = notificationCall(QStringLiteral("CloseNotification"));
        m_bus.send(call << shown);
    }
}

void DBusNotifications::send(const Notification &notification)
{
    const QVariantMap hints{{QStringLiteral("urgency"),
                             QVariant::fromValue(notification.isCritical ? criticalUrgency : normalUrgency)},
                            {QStringLiteral("desktop-entry"), QStringLiteral("com.kelmoth.app")},
                            {QStringLiteral("category"), QStringLiteral("device")}};
    auto call = notificationCall(QStringLiteral("Notify"));
    call << QStringLiteral("Kelmoth") << m_shown << QStringLiteral("com.kelmoth.app")
         << QString::fromStdString(notification.title) << QString::fromStdString(notification.body)
         << QStringList() << hints << serversOwnTimeout;
    m_isAwaited = true;
    auto *const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        take(*watcher);
    });
}

void DBusNotifications::take(const QDBusPendingCall &reply)
{
    const QDBusPendingReply<uint> number = reply;
    m_isAwaited = false;
    m_shown = number.isError() ? 0 : number.value();
    if (std::exchange(m_isWithdrawn, false)) {
        withdraw();
    } else if (const auto next = std::exchange(m_next, std::nullopt)) {
        send(*next);
    }
}

} // namespace kelmoth
