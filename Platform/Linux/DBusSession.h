#pragma once

#include "Platform/UserSession.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <string>
#include <utility>

namespace kelmoth {

/// The user session over its bus. A process owns its bundle identifier as bus name. A notification is a
/// signal: the last component of its name is the member, the rest the interface, and the object its only
/// argument. Queries block on the bus, a local socket. Main thread.
class DBusSession : public QObject, public UserSession {
    Q_OBJECT

public:
    /// `bus` is the session bus, or an invalid connection without one. Notifications are about programs with
    /// this identifier.
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
    Notification m_early; ///< last one received without an observer; empty: none
    Notification m_observed;
    std::function<void()> m_handler;
    std::function<void()> m_endHandler;

private Q_SLOTS:
    void receive(const QDBusMessage &message);
    void end();
};

/// The D-Bus address of the session bus; empty without one. Starts no bus.
QString sessionBusAddress();

} // namespace kelmoth
