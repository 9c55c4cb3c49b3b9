#pragma once

#include "Platform/Qt/XConnection.h"

#include <QObject>
#include <QRegion>
#include <QWindow>

#include <memory>

namespace kelmoth {

/// Window-system features for a popover that the toolkit does not provide. Main thread.
class PopoverScreen : public QObject {
    Q_OBJECT

public:
    /// `connection` may be null.
    explicit PopoverScreen(std::shared_ptr<XConnection> connection);
    ~PopoverScreen() override = default;

    /// Whether a program can position its windows.
    virtual bool canPlaceWindows() const;

    /// Whether a program knows the pointer's position also over other programs' windows.
    bool knowsPointer() const;

    /// Whether translucent windows are composited now.
    bool canShowShadows() const;

    /// Whether the toolkit ignores the desktop's text scaling. On X it does not: desktops put the scaling
    /// into Xft.dpi there.
    static bool leavesTextsToProgram();

    /// Hides a window that is about to be shown from task bars and pagers.
    void keepOutOfLists(QWindow &window) const;

    /// Clips a window to these physical pixels; an empty mask clips nothing. The toolkit's mask has logical
    /// pixels only.
    void cut(QWindow &window, const QRegion &shape) const;

Q_SIGNALS:
    /// `canShowShadows` has changed.
    void shadowsChanged();

private:
    void take(const xcb_generic_event_t &event);

    const std::shared_ptr<XConnection> m_connection;
    std::uint8_t m_selectionEvent = 0;
    bool m_isComposited = false;
};

} // namespace kelmoth
