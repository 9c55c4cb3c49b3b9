#pragma once

#include "UI/Components/Picture.h"

#include <QQuickItem>

namespace kelmoth {

/// An item that shows one picture painted for its size and for the pixels of its screen. The picture may
/// reach beyond the item; layouts see only the item. At rest its pixels are those of the screen; while the
/// item is scaled or turned the picture is, and once it has come to rest in another scale it is painted anew.
class PictureItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit PictureItem(QQuickItem *parent = nullptr);

protected:
    /// Everything that the picture depends on but its scale.
    virtual QByteArray pictureKey() const = 0;

    /// Paints for so many device pixels to a unit of length.
    virtual Picture paintPicture(double scale) const = 0;

    /// To be called when the picture's key changes.
    void pictureChanged() { update(); }

    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *) override;

private:
    bool m_isPutOff = false;     ///< the picture was not painted because it could not be seen
    double m_lastScale = 1.0;    ///< of the item in the window, when it was last drawn
    double m_pictureScale = 1.0; ///< the same, when its picture was painted
    qint64 m_shown = 0;          ///< the image that the node shows
};

} // namespace kelmoth
