#include "Platform/Qt/PressMonitor.h"

#include <QGuiApplication>
#include <QWindow>

#include <array>
#include <chrono>
#include <xcb/xinput.h>

namespace kelmoth {

namespace {

using namespace std::chrono_literals;

/// The effects of a press in other programs arrive within this time after its release. A busy shell is slow;
/// with raw events a new press ends the time, so that its effects are not taken for the last one's.
constexpr auto consequence = 3s;
constexpr auto unseenConsequence = 300ms;

constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;

/// The extension's code in events; none without the version that reports raw events.
std::optional<int> rawEventsOf(const XConnection &connection)
{
    const auto *extension = xcb_get_extension_data(connection.get(), &xcb_input_id);
    if (!extension || !extension->present) {
        return std::nullopt;
    }
    // Version 2.2 reports raw events also while another program, such as a menu, grabs the pointer.
    const auto cookie = xcb_input_xi_query_version(connection.get(), 2, 2);
    const XReply<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(connection.get(), cookie, nullptr));
    return version && version->major_version >= 2 ? std::optional<int>(extension->major_opcode)
                                                  : std::nullopt;
}

} // namespace

PressMonitor::PressMonitor(std::shared_ptr<XConnection> connection)
    : m_connection(std::move(connection)), m_followsFocus(!m_connection || XConnection::isWithinWayland())
{
    m_untilRest.setSingleShot(true);
    connect(&m_untilRest, &QTimer::timeout, this, [this] { select(m_isNeeded); });
    if (m_connection) {
        if (const auto extension = rawEventsOf(*m_connection)) {
            m_extension = *extension;
            connect(m_connection.get(), &XConnection::received, this, &PressMonitor::take);
        } else {
            m_connection = nullptr;
            m_followsFocus = true;
        }
    }
    m_consequence = m_followsFocus ? unseenConsequence : consequence;
    if (m_followsFocus) {
        connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
            if (state != Qt::ApplicationActive && m_isNeeded) {
                press();
            }
        });
    }
}

PressMonitor::~PressMonitor()
{
    select(false);
}

void PressMonitor::removeMonitor()
{
    m_handler = nullptr;
    setNeeded(false);
}

void PressMonitor::setNeeded(bool isNeeded)
{
    if (m_isNeeded == isNeeded) {
        return;
    }
    if (isNeeded) {
        catchUp(); // discard the press that caused this call
    }
    m_isNeeded = isNeeded;
    if (isNeeded) {
        m_untilRest.stop();
        select(true);
    } else if (!m_isHeld) {
        m_untilRest.start(m_consequence); // keep listening for the release
    }
}

bool PressMonitor::isLastPressUnderWay()
{
    catchUp(); // a new press, which ends the last one, may be queued
    return m_isHeld || (m_sincePress.isValid() && !m_sincePress.hasExpired(m_consequence.count()));
}

void PressMonitor::catchUp()
{
    if (m_connection) {
        m_connection->catchUp();
    }
}

void PressMonitor::take(const xcb_generic_event_t &event)
{
    const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
    if ((event.response_type & 0x7F) != XCB_GE_GENERIC || generic.extension != m_extension) {
        return;
    }
    const auto &raw = reinterpret_cast<const xcb_input_raw_button_press_event_t &>(event);
    if (raw.detail != leftButton && raw.detail != rightButton) {
        return;
    }
    if (generic.event_type == XCB_INPUT_RAW_BUTTON_PRESS) {
        m_sincePress.invalidate(); // a new press ends the last one
        m_isHeld = false;
        if (m_isNeeded && !isPointerOnOwnWindow()) {
            m_isHeld = true;
            press();
        }
    } else if (generic.event_type == XCB_INPUT_RAW_BUTTON_RELEASE && m_isHeld) {
        m_isHeld = false;
        m_sincePress.start();
        if (!m_isNeeded) {
            m_untilRest.start(m_consequence);
        }
    }
}

void PressMonitor::press()
{
    m_sincePress.start();
    if (m_handler) {
        const auto handler = m_handler; // a copy: it may remove itself
        handler();
    }
}

void PressMonitor::select(bool isSelected)
{
    if (!m_connection) {
        return;
    }
    m_isHeld = m_isHeld && isSelected;
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } request{};
    request.head.deviceid = XCB_INPUT_DEVICE_ALL_MASTER;
    request.head.mask_len = 1;
    request.mask = isSelected
                       ? XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE
                       : 0;
    xcb_input_xi_select_events(m_connection->get(), m_connection->root(), 1, &request.head);
    xcb_flush(m_connection->get());
}

/// A raw press has no position: query the pointer. Our windows are on top of all others while shown. In a
/// tray that embeds it, the status item is one of them.
bool PressMonitor::isPointerOnOwnWindow() const
{
    const auto windows = QGuiApplication::allWindows();
    for (const auto *window : windows) {
        if (!window->isVisible() || !window->handle()) {
            continue;
        }
        const auto id = static_cast<xcb_window_t>(window->winId());
        auto *connection = m_connection->get();
        const auto pointerCookie = xcb_query_pointer(connection, id);
        const auto sizeCookie = xcb_get_geometry(connection, id);
        const XReply<xcb_query_pointer_reply_t> pointer(
            xcb_query_pointer_reply(connection, pointerCookie, nullptr));
        const XReply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(connection, sizeCookie, nullptr));
        if (pointer && size && pointer->same_screen && pointer->win_x >= 0 && pointer->win_y >= 0 &&
            pointer->win_x < size->width && pointer->win_y < size->height) {
            return true;
        }
    }
    return false;
}

} // namespace kelmoth
