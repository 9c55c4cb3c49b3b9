#pragma once

#include "Platform/Qt/XConnection.h"

#include <QObject>
#include <QRegion>
#include <QWindow>

#include <memory>

namespace kelmoth {

/// What a screen does for a popover that the toolkit does not ask it for. Main thread.
class PopoverScreen : public QObject {
    Q_OBJECT

public:
    /// `connection` may be absent.
    explicit PopoverScreen(std::shared_ptr<XConnection> connection);
    ~PopoverScreen() override = default;

    /// Whether a program has a say in where its windows lie.
    virtual bool canPlaceWindows() const;

    /// Whether a program learns where the pointer is also while that is on somebody else's window.
    bool knowsPointer() const;

    /// Whether windows may shine through on screen now.
    bool canShowShadows() const;

    /// Whether the toolkit does not enlarge windows by what the desktop enlarges texts by. On X it does:
    /// desktops put their text scaling into Xft.dpi there.
    static bool leavesTextsToProgram();

    /// Has a window that is about to be shown left out of task bars and pagers.
    void keepOutOfLists(QWindow &window) const;

    /// Leaves of a window only these of its pixels; all when there are none. The toolkit's own mask knows
    /// only logical ones.
    void cut(QWindow &window, const QRegion &shape) const;

Q_SIGNALS:
    /// The answer of `canShowShadows` is another one than before.
    void shadowsChanged();

private:
    void take(const xcb_generic_event_t &event);

    const std::shared_ptr<XConnection> m_connection;
    std::uint8_t m_selectionEvent = 0;
    bool m_isComposited = false;
};

} // namespace kelmoth
