#pragma once

#include "Platform/Qt/TrayHosts.h"
#include "Platform/Qt/XConnection.h"
#include "Platform/StatusItem.h"

#include <QAction>
#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace kelmoth {

/// Draws a status item's picture with an opacity of 0 to 1.
using StatusPicture = std::function<QIcon(double alpha)>;

/// A status item in the desktop's tray, of either kind. Needs the application object. Main thread.
class TrayStatusItem : public QObject, public StatusItem {
    Q_OBJECT

public:
    TrayStatusItem(std::shared_ptr<XConnection> connection, StatusPicture picture);

    void setClickHandler(std::function<void()> handler) override { m_clickHandler = std::move(handler); }
    void setHostHandler(std::function<void()> handler) override { m_hostHandler = std::move(handler); }
    void setMenu(std::vector<MenuEntry> entries) override;
    void setToolTip(const std::string &text) override;
    void setAlphaValue(double alpha) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    std::optional<bool> isHosted() const override;
    std::optional<ScreenRect> frame() const override;

private:
    void followHosts();
    void registerAnew();
    void show();
    void followWindow();
    bool isDocking() const;
    void click(QSystemTrayIcon::ActivationReason reason);
    QAction *addEntry(std::size_t index);

    const std::shared_ptr<XConnection> m_connection;
    const StatusPicture m_picture;
    TrayHosts m_hosts;
    QString m_toolTip;
    double m_alpha = 1.0;
    std::vector<MenuEntry> m_entries;
    const std::unique_ptr<QMenu> m_menu;     ///< with an action for each
    QPointer<QWidget> m_window;              ///< the item's window, in a system tray of the X server
    std::unique_ptr<QSystemTrayIcon> m_icon; ///< null before the first host
    std::function<void()> m_clickHandler;
    std::function<void()> m_hostHandler;
};

class TrayStatusBar : public StatusBar {
public:
    TrayStatusBar(std::shared_ptr<XConnection> connection, StatusPicture picture);

    std::unique_ptr<StatusItem> statusItem() override;

private:
    const std::shared_ptr<XConnection> m_connection;
    const StatusPicture m_picture;
};

} // namespace kelmoth
