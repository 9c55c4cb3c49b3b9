#include "Platform/Qt/TrayHosts.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>

#include <string>
#include <utility>

namespace kelmoth {

namespace {

const auto watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const auto watcherPath = QStringLiteral("/StatusNotifierWatcher");

/// Whether the service owns its name, but has no object yet.
bool isOfBareName(const QDBusMessage &reply)
{
    const auto error = QDBusError(reply).type();
    return error == QDBusError::UnknownObject || error == QDBusError::UnknownMethod ||
           error == QDBusError::UnknownInterface;
}

} // namespace

TrayHosts::TrayHosts(std::shared_ptr<XConnection> connection)
    : m_bus(QDBusConnection::sessionBus()), m_connection(std::move(connection))
{
    if (m_connection) {
        m_traySelection =
            m_connection->atom("_NET_SYSTEM_TRAY_S" + std::to_string(m_connection->screenNumber()));
        m_managerMessage = m_connection->atom("MANAGER");
        const std::uint32_t structure =
            XCB_EVENT_MASK_STRUCTURE_NOTIFY; // a new tray sends MANAGER to the root window
        xcb_change_window_attributes(m_connection->get(), m_connection->root(), XCB_CW_EVENT_MASK,
                                     &structure);
        connect(m_connection.get(), &XConnection::received, this, &TrayHosts::take);
        findTray();
    }
    for (const auto *signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        m_bus.connect(QString(), watcherPath, watcher, QString::fromLatin1(signal), this,
                      SLOT(notifierHostChanged()));
    }
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
                  QStringLiteral("NameOwnerChanged"), {watcher}, QString(), this,
                  SLOT(ownerChanged(QString, QString, QString)));
    if (m_bus.isConnected()) {
        askNotifierHost();
    } else {
        m_isKnown = true; // no answer will come without a bus
    }
    m_wasAny = isAny();
}

std::optional<bool> TrayHosts::isAny() const
{
    const bool isSeen = m_hasNotifierHost || m_tray != XCB_NONE;
    return isSeen || m_isKnown ? std::optional(isSeen) : std::nullopt;
}

void TrayHosts::notifierHostChanged()
{
    askNotifierHost();
}

void TrayHosts::ownerChanged(const QString &, const QString &before, const QString &now)
{
    askNotifierHost();
    if (!before.isEmpty() && !now.isEmpty()) {
        Q_EMIT itemUnknown();
    }
}

/// Only the last query counts: earlier pending ones are dropped.
void TrayHosts::askNotifierHost()
{
    auto call = QDBusMessage::createMethodCall(
        watcher, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << watcher << QStringLiteral("IsStatusNotifierHostRegistered");
    call.setAutoStartService(false);
    m_asking = std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(call));
    connect(m_asking.get(), &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *asked) {
        const auto reply = asked->reply();
        m_asking.release()->deleteLater(); // it is emitting a signal
        const auto value = reply.arguments().value(0).value<QDBusVariant>().variant();
        const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage;
        m_hasNotifierHost = isAnswer && value.toBool();
        m_isKnown = true;
        if (std::exchange(m_isBare, isOfBareName(reply)) && isAnswer) {
            Q_EMIT itemUnknown();
        }
        update();
    });
}

void TrayHosts::take(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7F;
    if (type == XCB_CLIENT_MESSAGE) {
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (message.type == m_managerMessage && message.data.data32[1] == m_traySelection) {
            findTray();
            update();
        }
    } else if (type == XCB_DESTROY_NOTIFY) {
        const auto &destroyed = reinterpret_cast<const xcb_destroy_notify_event_t &>(event);
        if (destroyed.window == m_tray) {
            findTray(); // its successor may exist already
            update();
        }
    }
}

/// Finds the tray's window and subscribes to its end; there is no tray when it ended before that.
void TrayHosts::findTray()
{
    auto *connection = m_connection->get();
    const XReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, m_traySelection), nullptr));
    m_tray = owner ? owner->owner : XCB_NONE;
    if (m_tray != XCB_NONE) {
        const std::uint32_t structure = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        const auto cookie =
            xcb_change_window_attributes_checked(connection, m_tray, XCB_CW_EVENT_MASK, &structure);
        const XReply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
        if (error) {
            m_tray = XCB_NONE;
        }
    }
}

void TrayHosts::update()
{
    if (std::exchange(m_wasAny, isAny()) != isAny()) {
        Q_EMIT changed();
    }
}

} // namespace kelmoth
