#pragma once

#include <QQmlEngine>
#include <QQuickItem>

namespace kelmoth {

/// Keyboard focus as a person sees it. Main thread.
class FocusGuide : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// Whether the focus is to be shown: the user's last input was a key, not the pointer.
    Q_PROPERTY(bool visible READ isVisible NOTIFY visibleChanged)

public:
    explicit FocusGuide(QObject *parent = nullptr);

    bool isVisible() const { return m_visible; }

    /// Moves the focus by so many (`step`; backwards when negative) of the items inside `container` that take
    /// it; where there are not so many, it stays.
    Q_INVOKABLE void move(QQuickItem *container, int step) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void visibleChanged();

private:
    bool m_visible = false;
};

} // namespace kelmoth
