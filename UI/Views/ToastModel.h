#pragma once

#include "Core/Services/ToastManager.h"

#include <QObject>
#include <QString>

namespace kelmoth {

/// The toast over the panel: its `type` and `message` (a key) while it is `shown`. A tap is `hide()`. What it
/// said last stays while it leaves the screen.
class ToastModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(int type READ type NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    explicit ToastModel(ToastManager &toastManager, QObject *parent = nullptr);

    bool shown() const { return m_toastManager.isShowing(); }
    /// 0 error, 1 warning, 2 success, 3 info.
    int type() const { return static_cast<int>(m_last.type); }
    QString message() const;

    Q_INVOKABLE void hide();

Q_SIGNALS:
    void changed();

private:
    void follow();

    ToastManager &m_toastManager;
    Toast m_last; ///< the one that is shown, or was shown last
};

} // namespace kelmoth
