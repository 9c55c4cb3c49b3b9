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

/// A connection to the X server beside the toolkit's, for what the toolkit does not tell of. None where the
/// program does not speak X. Main thread.
class XConnection : public QObject {
    Q_OBJECT

public:
    /// To the server of the application object's screens.
    static std::unique_ptr<XConnection> connectToServer();

    /// Whether the server runs within a Wayland session: it then hears of the pointer only while that is on
    /// one of its windows.
    static bool isWithinWayland();

    ~XConnection() override;
    XConnection(const XConnection &) = delete;
    XConnection &operator=(const XConnection &) = delete;

    xcb_connection_t *get() const { return m_connection; }
    xcb_window_t root() const { return m_root; }
    int screenNumber() const { return m_screenNumber; }

    /// The atom of a name; 0 when the server does not answer.
    xcb_atom_t atom(std::string_view name) const;

    /// The window that owns a selection; none when nobody does.
    xcb_window_t selectionOwner(xcb_atom_t selection) const;

    /// The window that another lies in; none when that is gone.
    xcb_window_t parentOf(xcb_window_t window) const;

    /// Where a window is on the root window, in pixels of the server; nothing when it is gone.
    QRect areaOf(xcb_window_t window) const;

    /// Whether a compositor shows windows that others shine through.
    bool isComposited() const;

    /// From now on events of the extension XFIXES, which the server has, tell of compositors that come and
    /// go.
    void watchCompositor();

    /// Hands on all events of what the server has done up to now: the toolkit may have learnt of it before.
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

/// Owns what xcb allocates.
struct FreeDeleter {
    void operator()(void *memory) const { std::free(memory); }
};
template <class T> using XReply = std::unique_ptr<T, FreeDeleter>;

} // namespace kelmoth
