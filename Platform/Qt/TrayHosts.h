#pragma once

#include "Platform/Qt/XConnection.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QObject>

#include <memory>
#include <optional>

namespace kelmoth {

/// Who could show a status item: a StatusNotifier host on the session bus, or a system tray of the X server.
/// Both may come, go and return. The toolkit looks for them once and remembers what it saw: it is to be asked
/// only when there is one. Main thread.
class TrayHosts : public QObject {
    Q_OBJECT

public:
    /// `connection` may be absent.
    explicit TrayHosts(std::shared_ptr<XConnection> connection);

    /// Whether there is one. A tray of the X server is seen at once; without it none until the bus, if there
    /// is one, has answered. Which of both is used where both are the toolkit asks itself.
    std::optional<bool> isAny() const;

Q_SIGNALS:
    /// The answer of `isAny` is another one than before.
    void changed();

    /// The StatusNotifier watcher does not know the item, though the toolkit thinks so: it has followed
    /// another without a moment between, of which the toolkit takes no notice, or has had its name before it
    /// answered.
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
    bool m_isBare = false;  ///< the watcher had its name, and nothing else, when it was last asked
    std::optional<bool> m_wasAny;

private Q_SLOTS:
    void notifierHostChanged();
    void ownerChanged(const QString &name, const QString &before, const QString &now);
};

} // namespace kelmoth
