#pragma once

#include <QColor>
#include <QQuickItem>

namespace kelmoth {

/// Lies over everything in its window and has the software renderer draw each frame whole where a logical
/// pixel is not a whole number of the screen's: what it repaints in part there, it first clears up to the
/// next pixel, and leaves gaps. Also fills what the window has beyond its last whole logical pixel, which
/// nothing else is drawn on. Costs no frame of its own.
class WholeFrames : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Of the window's edge; transparent: nothing is filled.
    Q_PROPERTY(QColor edgeColor MEMBER m_edgeColor WRITE setEdgeColor NOTIFY edgeColorChanged)

public:
    explicit WholeFrames(QQuickItem *parent = nullptr);

    void setEdgeColor(const QColor &color);

Q_SIGNALS:
    void edgeColorChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *) override;

private:
    QColor m_edgeColor = Qt::transparent;
};

} // namespace kelmoth
