#pragma once

#include "Platform/UserSession.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <string>
#include <utility>

namespace kelmoth {

/// The session as its bus knows it. A process is known by the bus name that is its bundle identifier, a
/// notification is a signal: its name without the last word is the interface, the last word the member, and
/// the object its one argument. Asking waits for the bus, which is a local socket. Main thread.
class DBusSession : public QObject, public UserSession {
    Q_OBJECT

public:
    /// `bus` is the session bus, or a connection that is none where there is no bus. Notifications are about
    /// programs with this identifier.
    DBusSession(QDBusConnection bus, const QString &bundleIdentifier);
    ~DBusSession() override;
    DBusSession(const DBusSession &) = delete;
    DBusSession &operator=(const DBusSession &) = delete;

    std::vector<RunningApplication> runningApplications(std::string_view bundleIdentifier) const override;
    void observe(std::string_view name, std::string_view object, std::function<void()> handler) override;
    void removeObserver() override;
    void post(std::string_view name, std::string_view object) override;
    void setEndHandler(std::function<void()> handler) override { m_endHandler = std::move(handler); }
    std::string applicationSupportDirectory() const override;

private:
    using Notification = std::pair<QString, QString>; ///< name and object

    void callBus(const QString &method, const QVariantList &arguments);

    const QString m_bundleIdentifier;
    QDBusConnection m_bus;
    Notification m_early; ///< the last one that came while nobody observed; empty when none did
    Notification m_observed;
    std::function<void()> m_handler;
    std::function<void()> m_endHandler;

private Q_SLOTS:
    void receive(const QDBusMessage &message);
    void end();
};

/// The address of this session's bus, in D-Bus's own notation; empty when the session has none. None is
/// started.
QString sessionBusAddress();

} // namespace kelmoth
