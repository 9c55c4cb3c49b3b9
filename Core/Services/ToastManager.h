#pragma once

#include <QObject>
#include <QTimer>
#include <QUuid>

#include <memory>
#include <optional>
#include <string>

namespace kelmoth {

/// The kinds of toast, in their order.
enum class ToastType { error, warning, success, info };

/// A short message that goes away by itself. A plain value.
struct Toast {
    QUuid id = QUuid::createUuid(); ///< new for every toast shown
    ToastType type = ToastType::info;
    std::string message;   ///< English, a translation key
    double duration = 0.0; ///< seconds on screen

    bool operator==(const Toast &) const = default;
};

/// The one channel for short messages to the user. At most one is shown; a new one replaces it at once.
/// Main thread.
class ToastManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isShowing READ isShowing NOTIFY currentToastChanged)

public:
    /// How long each kind of message stays, in seconds.
    static constexpr double errorDuration = 4.0;
    static constexpr double warningDuration = 4.0;
    static constexpr double successDuration = 2.5;
    static constexpr double infoDuration = 2.5;

    /// The application's one instance; made on first use, gone with the application object.
    static ToastManager &shared();

    explicit ToastManager(QObject *parent = nullptr);

    /// The message on screen; none when there is none.
    const std::optional<Toast> &currentToast() const { return m_currentToast; }
    bool isShowing() const { return m_currentToast.has_value(); }

    /// Shows a message for so many seconds, in place of any that is shown.
    void show(ToastType type, std::string message, double duration);

    /// Takes the message away at once.
    Q_INVOKABLE void hide();

    void error(std::string message) { show(ToastType::error, std::move(message), errorDuration); }
    void warning(std::string message) { show(ToastType::warning, std::move(message), warningDuration); }
    void success(std::string message) { show(ToastType::success, std::move(message), successDuration); }
    void info(std::string message) { show(ToastType::info, std::move(message), infoDuration); }

Q_SIGNALS:
    void currentToastChanged();

private:
    void hideIfCurrent(const QUuid &id);

    std::optional<Toast> m_currentToast;
    std::unique_ptr<QTimer> m_toastTimer; ///< of the current toast; none while none is shown
};

} // namespace kelmoth
