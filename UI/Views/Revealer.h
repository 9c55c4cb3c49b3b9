#pragma once

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>

namespace kelmoth {

/// Scrolls a Flickable so that what matters is in sight. Lies inside the Flickable. Main thread.
class Revealer : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// What is scrolled.
    Q_PROPERTY(QQuickItem *flickable MEMBER m_flickable WRITE setFlickable NOTIFY flickableChanged)
    /// Whether the item that gets the keyboard's focus is to be shown, too.
    Q_PROPERTY(bool active MEMBER m_active NOTIFY activeChanged)

public:
    using QObject::QObject;

    void setFlickable(QQuickItem *flickable);

    /// Scrolls up or down as far as it takes to show `item` with a little around it; of one that is higher
    /// than the Flickable the upper part. Nothing for an item that is not in the Flickable. While the content
    /// grows, the item stays in sight until the user scrolls or the Flickable is out of sight.
    Q_INVOKABLE void reveal(QQuickItem *item);

Q_SIGNALS:
    void flickableChanged();
    void activeChanged();

private Q_SLOTS:
    void revealAgain();
    void forget() { m_revealed.clear(); }

private:
    void follow(QQuickWindow *window);

    QPointer<QQuickItem> m_flickable;
    QPointer<QQuickItem> m_revealed;
    double m_contentHeight = 0;
    QMetaObject::Connection m_focus;
    bool m_active = false;
};

} // namespace kelmoth
