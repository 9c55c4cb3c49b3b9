#pragma once

#include "Core/Services/ToastManager.h"

#include <QObject>
#include <QString>

namespace kelmoth {

/// The toast over the panel. The view shows of it, while `shown`: `icon` and the border in the theme's colour
/// `colorName`, and `message` (a key). A tap is `hide()`. What it said last stays while it leaves the screen.
class ToastModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(int type READ type NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QString icon READ icon NOTIFY changed)
    Q_PROPERTY(QString colorName READ colorName NOTIFY changed)

public:
    explicit ToastModel(ToastManager &toastManager, QObject *parent = nullptr);

    bool shown() const { return m_toastManager.isShowing(); }
    /// 0 error, 1 warning, 2 success, 3 info.
    int type() const { return static_cast<int>(m_last.type); }
    QString message() const;
    QString icon() const;
    QString colorName() const;

    Q_INVOKABLE void hide();

Q_SIGNALS:
    void changed();

private:
    void follow();

    ToastManager &m_toastManager;
    Toast m_last; ///< the one that is shown, or was shown last
};

} // namespace kelmoth
