#pragma once

#include "Platform/EventMonitor.h"
#include "Platform/Qt/XConnection.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

namespace kelmoth {

/// Presses as the X server reports them to whoever listens at the root window, whichever window they go to.
/// Where the server does not see them all, as under Wayland, that the program loses the focus to another one
/// stands in for a press.
class PressMonitor : public QObject, public EventMonitor {
    Q_OBJECT

public:
    /// With the application object. `connection` may be absent: there is only the focus then.
    explicit PressMonitor(std::shared_ptr<XConnection> connection);
    ~PressMonitor() override;
    PressMonitor(const PressMonitor &) = delete;
    PressMonitor &operator=(const PressMonitor &) = delete;

    void addGlobalMonitor(std::function<void()> handler) override { m_handler = std::move(handler); }
    void removeMonitor() override;
    void setNeeded(bool isNeeded) override;
    bool isLastPressUnderWay() override;

private:
    void take(const xcb_generic_event_t &event);
    void catchUp();
    void press();
    void select(bool isSelected);
    bool isPointerOnOwnWindow() const;

    std::shared_ptr<XConnection> m_connection; ///< none without the extension, too
    int m_extension = 0;                       ///< the extension's code in events
    bool m_followsFocus = false;
    std::chrono::milliseconds m_consequence{}; ///< how long after its end a press is under way
    std::function<void()> m_handler;
    bool m_isNeeded = false;
    bool m_isHeld = false;      ///< the button of the last press is down
    QElapsedTimer m_sincePress; ///< or since its release
    QTimer m_untilRest;
};

} // namespace kelmoth
