#include "Core/Services/ToastManager.h"

#include "Core/Services/SharedInstance.h"

#include <QMetaObject>

#include <chrono>

namespace kelmoth {

ToastManager &ToastManager::shared()
{
    return sharedInstance([] { return std::make_unique<ToastManager>(); });
}

ToastManager::ToastManager(QObject *parent) : QObject(parent) {}

void ToastManager::show(ToastType type, std::string message, double duration)
{
    const Toast toast{.type = type, .message = std::move(message), .duration = duration};
    m_toastTimer = std::make_unique<QTimer>();
    m_toastTimer->setSingleShot(true);
    m_toastTimer->setTimerType(Qt::PreciseTimer); // a coarse one may be a twentieth early
    connect(m_toastTimer.get(), &QTimer::timeout, this, [this, id = toast.id] {
        // Once more through the queue: what was shown in the meantime is not this timer's to hide.
        QMetaObject::invokeMethod(this, [this, id] { hideIfCurrent(id); }, Qt::QueuedConnection);
    });
    m_toastTimer->start(
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::duration<double>(duration)));
    m_currentToast = toast;
    Q_EMIT currentToastChanged();
}

void ToastManager::hide()
{
    m_toastTimer.reset();
    m_currentToast.reset();
    Q_EMIT currentToastChanged();
}

void ToastManager::hideIfCurrent(const QUuid &id)
{
    if (m_currentToast && m_currentToast->id == id) {
        hide();
    }
}

} // namespace kelmoth
