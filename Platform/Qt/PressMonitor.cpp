#include "Platform/Qt/PressMonitor.h"

#include <QGuiApplication>
#include <QWindow>

#include <array>
#include <chrono>
#include <xcb/xinput.h>

namespace kelmoth {

namespace {

using namespace std::chrono_literals;

/// What a press brings about elsewhere arrives within this time after its end. A busy shell takes long; where
/// the next press is seen as well, nothing that it brings about is taken for the last one's.
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
    // Version 2.2 reports them also while another program has grabbed the pointer, as menus do.
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
        catchUp(); // the press that has brought this about is none that comes from now on
    }
    m_isNeeded = isNeeded;
    if (isNeeded) {
        m_untilRest.stop();
        select(true);
    } else if (!m_isHeld) {
        m_untilRest.start(m_consequence); // whether the press goes on is still of interest
    }
}

bool PressMonitor::isLastPressUnderWay()
{
    catchUp(); // a press may be on its way that ends the last one
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
        m_sincePress.invalidate(); // a new one: the last is over
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
        const auto handler = m_handler; // it may be taken away by itself
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

/// A raw press has no place: it is asked for. Our windows lie on top of all others while they are shown. The
/// item is one of them in a tray that embeds it.
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
