#include "Platform/Qt/XConnection.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>

#include <string>
#include <xcb/xfixes.h>

namespace kelmoth {

std::unique_ptr<XConnection> XConnection::connectToServer()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        return nullptr;
    }
    int screenNumber = 0;
    auto *connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<XConnection>(new XConnection(connection, screenNumber));
}

XConnection::XConnection(xcb_connection_t *connection, int screenNumber)
    : m_connection(connection),
      m_screenNumber(screenNumber),
      m_notifier(xcb_get_file_descriptor(connection), QSocketNotifier::Read)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber && screens.rem > 1; ++i) {
        xcb_screen_next(&screens);
    }
    m_root = screens.data->root;
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] { dispatch(xcb_poll_for_event); });
    // Waiting for a reply also queues events, for which the socket does not become readable again.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            [this] { dispatch(xcb_poll_for_queued_event); });
}

bool XConnection::isWithinWayland()
{
    return qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

XConnection::~XConnection()
{
    m_notifier.setEnabled(false);
    xcb_disconnect(m_connection);
}

xcb_atom_t XConnection::atom(std::string_view name) const
{
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
    return reply ? reply->atom : 0;
}

xcb_window_t XConnection::selectionOwner(xcb_atom_t selection) const
{
    const auto cookie = xcb_get_selection_owner(m_connection, selection);
    const XReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
    return reply ? reply->owner : XCB_NONE;
}

xcb_window_t XConnection::parentOf(xcb_window_t window) const
{
    const auto cookie = xcb_query_tree(m_connection, window);
    const XReply<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(m_connection, cookie, nullptr));
    return reply ? reply->parent : XCB_NONE;
}

QRect XConnection::areaOf(xcb_window_t window) const
{
    const auto sizeCookie = xcb_get_geometry(m_connection, window);
    const auto placeCookie = xcb_translate_coordinates(m_connection, window, m_root, 0, 0);
    const XReply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(m_connection, sizeCookie, nullptr));
    const XReply<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(m_connection, placeCookie, nullptr));
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

xcb_atom_t XConnection::compositorSelection() const
{
    return atom("_NET_WM_CM_S" + std::to_string(m_screenNumber));
}

bool XConnection::isComposited() const
{
    return selectionOwner(compositorSelection()) != XCB_NONE;
}

void XConnection::watchCompositor()
{
    const auto greeting = xcb_xfixes_query_version(m_connection, 1, 0); // required before any other request
    xcb_discard_reply(m_connection, greeting.sequence);
    xcb_xfixes_select_selection_input(m_connection, m_root, compositorSelection(),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(m_connection);
}

void XConnection::catchUp()
{
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    dispatch(xcb_poll_for_event);
}

void XConnection::dispatch(NextEvent nextEvent)
{
    while (const XReply<xcb_generic_event_t> next{nextEvent(m_connection)}) {
        Q_EMIT received(*next);
    }
    if (xcb_connection_has_error(m_connection) != 0) {
        m_notifier.setEnabled(false); // the server is gone; the toolkit ends the process
    }
}

} // namespace kelmoth
