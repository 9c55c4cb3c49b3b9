#pragma once

#include "Platform/Qt/XConnection.h"

#include <QWindow>

#include <memory>

namespace kelmoth {

/// What a screen does for a popover that the toolkit does not ask it for. Main thread.
class PopoverScreen {
public:
    /// `connection` may be absent.
    explicit PopoverScreen(std::shared_ptr<XConnection> connection);
    virtual ~PopoverScreen() = default;

    /// Whether a program has a say in where its windows lie.
    virtual bool canPlaceWindows() const;

    /// Whether a program learns where the pointer is also while that is on somebody else's window.
    bool knowsPointer() const;

    /// Whether windows may shine through on screen now.
    bool canShowShadows() const;

    /// Has a window that is about to be shown left out of task bars and pagers.
    void keepOutOfLists(QWindow &window) const;

private:
    const std::shared_ptr<XConnection> m_connection;
};

} // namespace kelmoth
