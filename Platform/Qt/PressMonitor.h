#pragma once

#include "Platform/EventMonitor.h"
#include "Platform/Qt/XConnection.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

namespace kelmoth {

/// Reports presses from the X server's raw events on the root window, whichever window they go to. Where the
/// server does not see all presses, as under Wayland, losing the focus to another program counts as a press.
class PressMonitor : public QObject, public EventMonitor {
    Q_OBJECT

public:
    /// Needs the application object. With a null `connection` only the focus counts.
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

    std::shared_ptr<XConnection> m_connection; ///< null also without the extension
    int m_extension = 0;                       ///< the extension's code in events
    bool m_followsFocus = false;
    std::chrono::milliseconds m_consequence{}; ///< how long a press counts as under way after its release
    std::function<void()> m_handler;
    bool m_isNeeded = false;
    bool m_isHeld = false;      ///< the button of the last press is still down
    QElapsedTimer m_sincePress; ///< since the last press or its release
    QTimer m_untilRest;
};

} // namespace kelmoth
