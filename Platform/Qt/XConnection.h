#pragma once

#include <QObject>
#include <QRect>
#include <QSocketNotifier>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <xcb/xcb.h>

namespace kelmoth {

/// An own connection to the X server, for what the toolkit does not report. Null unless the program runs on
/// X. Main thread.
class XConnection : public QObject {
    Q_OBJECT

public:
    /// Connects to the server of the application object's screens.
    static std::unique_ptr<XConnection> connectToServer();

    /// Whether the server runs within a Wayland session: it then gets pointer events only over its own
    /// windows.
    static bool isWithinWayland();

    ~XConnection() override;
    XConnection(const XConnection &) = delete;
    XConnection &operator=(const XConnection &) = delete;

    xcb_connection_t *get() const { return m_connection; }
    xcb_window_t root() const { return m_root; }
    int screenNumber() const { return m_screenNumber; }

    /// The atom of a name; 0 when the server does not answer.
    xcb_atom_t atom(std::string_view name) const;

    /// The window that owns a selection; none without an owner.
    xcb_window_t selectionOwner(xcb_atom_t selection) const;

    /// The parent of a window; none when the window is gone.
    xcb_window_t parentOf(xcb_window_t window) const;

    /// A window's geometry on the root window, in server pixels; empty when it is gone.
    QRect areaOf(xcb_window_t window) const;

    /// Whether a compositor shows translucent windows.
    bool isComposited() const;

    /// Subscribes to XFIXES events about compositors that start or end; the server has XFIXES.
    void watchCompositor();

    /// Dispatches all events that the server has sent so far: the toolkit may know of them already.
    void catchUp();

Q_SIGNALS:
    void received(const xcb_generic_event_t &event);

private:
    using NextEvent = xcb_generic_event_t *(*)(xcb_connection_t *);

    XConnection(xcb_connection_t *connection, int screenNumber);
    void dispatch(NextEvent nextEvent);
    xcb_atom_t compositorSelection() const;

    xcb_connection_t *const m_connection;
    const int m_screenNumber;
    xcb_window_t m_root = 0;
    QSocketNotifier m_notifier;
};

/// Owns memory allocated by xcb.
struct FreeDeleter {
    void operator()(void *memory) const { std::free(memory); }
};
template <class T> using XReply = std::unique_ptr<T, FreeDeleter>;

} // namespace kelmoth
