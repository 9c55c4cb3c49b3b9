#pragma once

#include "Platform/Qt/XConnection.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QObject>

#include <memory>
#include <optional>

namespace kelmoth {

/// Finds hosts that can show a status item: a StatusNotifier host on the session bus, or a system tray of the
/// X server. Both may come and go. The toolkit looks for them once and caches the result: use it only once
/// there is a host. Main thread.
class TrayHosts : public QObject {
    Q_OBJECT

public:
    /// `connection` may be null.
    explicit TrayHosts(std::shared_ptr<XConnection> connection);

    /// Whether there is a host. An X tray is found at once; without one the result is none until the bus, if
    /// any, has answered. If there are both, the toolkit chooses.
    std::optional<bool> isAny() const;

Q_SIGNALS:
    /// `isAny` has changed.
    void changed();

    /// The StatusNotifier watcher does not know the item, although the toolkit believes so: the watcher took
    /// over from another at once, which the toolkit does not notice, or owned its name before it could
    /// answer.
    void itemUnknown();

private:
    void askNotifierHost();
    void take(const xcb_generic_event_t &event);
    void findTray();
    void update();

    QDBusConnection m_bus;
    std::unique_ptr<QDBusPendingCallWatcher> m_asking;
    std::shared_ptr<XConnection> m_connection;
    xcb_atom_t m_traySelection = 0;
    xcb_atom_t m_managerMessage = 0;
    xcb_window_t m_tray = XCB_NONE; ///< the tray's window
    bool m_hasNotifierHost = false;
    bool m_isKnown = false; ///< the bus has answered
    bool m_isBare = false;  ///< the watcher owned its name, but no object, at the last query
    std::optional<bool> m_wasAny;

private Q_SLOTS:
    void notifierHostChanged();
    void ownerChanged(const QString &name, const QString &before, const QString &now);
};

} // namespace kelmoth
