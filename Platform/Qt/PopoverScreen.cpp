#include "Platform/Qt/PopoverScreen.h"

#include <QGuiApplication>

#include <array>
#include <utility>

namespace kelmoth {

PopoverScreen::PopoverScreen(std::shared_ptr<XConnection> connection) : m_connection(std::move(connection)) {}

bool PopoverScreen::canPlaceWindows() const
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool PopoverScreen::knowsPointer() const
{
    return m_connection && !XConnection::isWithinWayland();
}

bool PopoverScreen::canShowShadows() const
{
    return m_connection && m_connection->isComposited();
}

/// Window managers take the state of a window away when it is hidden; the toolkit adds its own to what it
/// finds when it shows one.
void PopoverScreen::keepOutOfLists(QWindow &window) const
{
    if (!m_connection) {
        return;
    }
    window.create();
    const auto state = m_connection->atom("_NET_WM_STATE");
    const std::array skipped{m_connection->atom("_NET_WM_STATE_SKIP_TASKBAR"),
                             m_connection->atom("_NET_WM_STATE_SKIP_PAGER")};
    const auto cookie = xcb_change_property_checked(
        m_connection->get(), XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), state,
        XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(skipped.size()), skipped.data());
    // Before the toolkit, which has a connection of its own, goes on.
    const XReply<xcb_generic_error_t> ignored(xcb_request_check(m_connection->get(), cookie));
}

} // namespace kelmoth
