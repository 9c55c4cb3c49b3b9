#pragma once

#include <QImage>
#include <QPointer>
#include <QQuickItem>
#include <QQuickItemGrabResult>
#include <QSharedPointer>

namespace kelmoth {

/// A grey, blurred picture of another item, taken again whenever that item looks different. For use in place
/// of the item, which is hidden by an ancestor's opacity of 0 while `ready` (its own would hide it here,
/// too). Works with every renderer.
class PageVeil : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// What is pictured; an item of the same window.
    Q_PROPERTY(QQuickItem *source READ source WRITE setSource NOTIFY sourceChanged)
    /// Whether pictures are taken and shown.
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY activeChanged)
    /// Whether there is a picture that is shown.
    Q_PROPERTY(bool ready READ isReady NOTIFY readyChanged)

public:
    explicit PageVeil(QQuickItem *parent = nullptr);

    QQuickItem *source() const { return m_source; }
    bool isActive() const { return m_active; }
    bool isReady() const { return m_active && !m_veil.isNull(); }

    void setSource(QQuickItem *source);
    void setActive(bool active);

    /// Takes the first picture at once, of what is to be seen now, for when it becomes active in this turn of
    /// the event loop. Costs two frames.
    Q_INVOKABLE void prepare();

Q_SIGNALS:
    void sourceChanged();
    void activeChanged();
    void readyChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *) override;

private:
    QSharedPointer<QQuickItemGrabResult> askForGrab() const;
    void grab();
    void show(const QImage &grabbed);
    void paint(const QImage &grabbed);
    void reset();

    QPointer<QQuickItem> m_source;
    bool m_active = false;
    QSharedPointer<QQuickItemGrabResult> m_grab; ///< under way
    int m_framesMeanwhile = 0;                   ///< shown since it was asked for
    QMetaObject::Connection m_frames;
    QImage m_grabbed; ///< the source as it was last seen
    QImage m_veil;    ///< what is shown for it
    qint64 m_shown = 0;
};

} // namespace kelmoth
