#include "Platform/Qt/PopoverScreen.h"

#include <QGuiApplication>

#include <array>
#include <utility>
#include <vector>
#include <xcb/shape.h>
#include <xcb/xfixes.h>

namespace kelmoth {

PopoverScreen::PopoverScreen(std::shared_ptr<XConnection> connection) : m_connection(std::move(connection))
{
    const auto *extension =
        m_connection ? xcb_get_extension_data(m_connection->get(), &xcb_xfixes_id) : nullptr;
    if (!extension || !extension->present) {
        return;
    }
    m_selectionEvent = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    connect(m_connection.get(), &XConnection::received, this, &PopoverScreen::take);
    m_connection->watchCompositor();
    m_isComposited = m_connection->isComposited();
}

bool PopoverScreen::canPlaceWindows() const
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool PopoverScreen::leavesTextsToProgram()
{
    return QGuiApplication::platformName() != QLatin1String("xcb");
}

bool PopoverScreen::knowsPointer() const
{
    return m_connection && !XConnection::isWithinWayland();
}

bool PopoverScreen::canShowShadows() const
{
    return m_connection && m_connection->isComposited();
}

void PopoverScreen::take(const xcb_generic_event_t &event)
{
    if ((event.response_type & 0x7F) == m_selectionEvent &&
        std::exchange(m_isComposited, m_connection->isComposited()) != m_isComposited) {
        Q_EMIT shadowsChanged();
    }
}

void PopoverScreen::cut(QWindow &window, const QRegion &shape) const
{
    if (!m_connection) {
        return;
    }
    window.create();
    const auto id = static_cast<xcb_window_t>(window.winId());
    if (shape.isEmpty()) {
        xcb_shape_mask(m_connection->get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, id, 0, 0, XCB_NONE);
    } else {
        std::vector<xcb_rectangle_t> rects;
        for (const QRect &rect : shape) {
            rects.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                             static_cast<std::uint16_t>(rect.width()),
                             static_cast<std::uint16_t>(rect.height())});
        }
        xcb_shape_rectangles(m_connection->get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                             XCB_CLIP_ORDERING_UNSORTED, id, 0, 0, static_cast<std::uint32_t>(rects.size()),
                             rects.data());
    }
    xcb_flush(m_connection->get());
}

/// Window managers remove a window's state when it is hidden; the toolkit adds its own state to the existing
/// one when it shows it.
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
    // Wait for the server before the toolkit continues on its own connection.
    const XReply<xcb_generic_error_t> ignored(xcb_request_check(m_connection->get(), cookie));
}

} // namespace kelmoth
