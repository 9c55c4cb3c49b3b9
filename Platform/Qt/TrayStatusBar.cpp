#include "Platform/Qt/TrayStatusBar.h"

#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QScreen>

#include <utility>

namespace kelmoth {

namespace {

/// A menu that handles its shortcuts while it is open: the toolkit's menu does so only within a window.
class ItemMenu : public QMenu {
protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const auto entries = actions();
        for (auto *entry : entries) {
            if (entry->shortcut() == QKeySequence(event->keyCombination())) {
                close();
                entry->trigger();
                return;
            }
        }
        QMenu::keyPressEvent(event);
    }
};

xcb_window_t idOf(const QWidget &window)
{
    return static_cast<xcb_window_t>(window.internalWinId());
}

/// Converts from server pixels. Each screen has the same origin in the toolkit as on the server.
QRect inPoints(const QRect &area)
{
    const auto screens = QGuiApplication::screens();
    for (const auto *screen : screens) {
        const QPointF origin = screen->geometry().topLeft();
        const double ratio = screen->devicePixelRatio();
        if (QRectF(origin, QSizeF(screen->size()) * ratio).contains(area.center())) {
            return QRectF(origin + (area.topLeft() - origin) / ratio, QSizeF(area.size()) / ratio).toRect();
        }
    }
    return area;
}

} // namespace

TrayStatusItem::TrayStatusItem(std::shared_ptr<XConnection> connection, StatusPicture picture)
    : m_connection(std::move(connection)),
      m_picture(std::move(picture)),
      m_hosts(m_connection),
      m_menu(std::make_unique<ItemMenu>())
{
    connect(&m_hosts, &TrayHosts::changed, this, &TrayStatusItem::followHosts);
    connect(&m_hosts, &TrayHosts::itemUnknown, this, &TrayStatusItem::registerAnew);
    if (m_hosts.isAny().value_or(false)) {
        show();
    }
}

void TrayStatusItem::registerAnew()
{
    if (m_icon && !m_window) {
        m_icon->hide();
        m_icon->show();
    }
}

/// Once created, the toolkit's item follows its kind of host by itself.
void TrayStatusItem::followHosts()
{
    if (m_hosts.isAny().value_or(false) && !m_icon) {
        show();
    }
    if (m_hostHandler) {
        m_hostHandler();
    }
}

void TrayStatusItem::show()
{
    m_icon = std::make_unique<QSystemTrayIcon>(m_picture(m_alpha));
    m_icon->setToolTip(m_toolTip);
    m_icon->setContextMenu(m_menu.get());
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, &TrayStatusItem::click);
    m_icon->show();
    followWindow();
}

/// If the item is a window, the toolkit does not report when it is placed, nor when it creates a window for
/// the next tray. So look for that among all top-level widgets.
void TrayStatusItem::followWindow()
{
    const auto widgets = QApplication::topLevelWidgets();
    for (auto *widget : widgets) {
        if (m_connection && widget->inherits("QSystemTrayIconSys")) {
            m_window = widget;
            widget->installEventFilter(this);
            qApp->removeEventFilter(this);
            connect(widget, &QObject::destroyed, this, [this] { qApp->installEventFilter(this); });
        }
    }
}

bool TrayStatusItem::eventFilter(QObject *watched, QEvent *event)
{
    const auto type = event->type();
    if (!m_window && type == QEvent::Polish) {
        followWindow();
    }
    if (watched == m_window && (type == QEvent::Move || type == QEvent::Resize || type == QEvent::Paint)) {
        QMetaObject::invokeMethod(this, &TrayStatusItem::followHosts, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

/// Whether the item's window waits to be embedded by a tray. A tray that ends releases or destroys it.
bool TrayStatusItem::isDocking() const
{
    if (!m_window) {
        return false;
    }
    const auto id = idOf(*m_window);
    const auto parent = id == XCB_NONE ? XCB_NONE : m_connection->parentOf(id);
    return parent == XCB_NONE || parent == m_connection->root();
}

std::optional<bool> TrayStatusItem::isHosted() const
{
    const auto isAny = m_hosts.isAny();
    return isAny == true && isDocking() ? std::nullopt : isAny;
}

/// A double click counts as a second click. The toolkit opens the menu of the right button; the middle button
/// is ignored.
void TrayStatusItem::click(QSystemTrayIcon::ActivationReason reason)
{
    const bool isLeft = reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick;
    if (isLeft && m_clickHandler) {
        m_clickHandler();
    }
}

/// Hosts read a menu once and keep the IDs of its entries: so keep the menu and its entries, and change their
/// content.
void TrayStatusItem::setMenu(std::vector<MenuEntry> entries)
{
    m_entries = std::move(entries);
    while (m_menu->actions().size() > std::ssize(m_entries)) {
        delete m_menu->actions().constLast();
    }
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const auto index = static_cast<qsizetype>(i);
        auto *action = index < m_menu->actions().size() ? m_menu->actions().at(index) : addEntry(i);
        const auto &[title, act, keyEquivalent] = m_entries[i];
        action->setSeparator(!act);
        action->setText(QString::fromStdString(title));
        action->setShortcut(keyEquivalent.empty() ? QKeySequence()
                                                  : QKeySequence(QStringLiteral("Ctrl+") +
                                                                 QString::fromStdString(keyEquivalent)));
    }
}

/// Triggers the action that is at this index at that time.
QAction *TrayStatusItem::addEntry(std::size_t index)
{
    auto *action = m_menu->addAction(QString());
    connect(
        action, &QAction::triggered, action,
        [this, index] {
            const auto act = m_entries.at(index).action; // a copy: it may change the menu
            act();
        },
        Qt::QueuedConnection);
    return action;
}

void TrayStatusItem::setToolTip(const std::string &text)
{
    m_toolTip = QString::fromStdString(text);
    if (m_icon) {
        m_icon->setToolTip(m_toolTip);
    }
}

void TrayStatusItem::setAlphaValue(double alpha)
{
    m_alpha = alpha;
    if (m_icon) {
        m_icon->setIcon(m_picture(alpha));
    }
}

/// Known for a tray of the X server only. Queries the server, because the toolkit learns the position later.
std::optional<ScreenRect> TrayStatusItem::frame() const
{
    const auto area = m_window && !isDocking() ? inPoints(m_connection->areaOf(idOf(*m_window))) : QRect();
    return area.isEmpty() ? std::nullopt
                          : std::optional(ScreenRect{area.x(), area.y(), area.width(), area.height()});
}

TrayStatusBar::TrayStatusBar(std::shared_ptr<XConnection> connection, StatusPicture picture)
    : m_connection(std::move(connection)), m_picture(std::move(picture))
{
}

std::unique_ptr<StatusItem> TrayStatusBar::statusItem()
{
    return std::make_unique<TrayStatusItem>(m_connection, m_picture);
}

} // namespace kelmoth
