#include "UI/Components/PictureItem.h"

#include "UI/Components/ScaleWatch.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <memory>

namespace kelmoth {
namespace {

/// The scale of an item that is neither turned nor distorted in its window; none otherwise.
std::optional<double> uprightScale(const QTransform &transform)
{
    const bool upright = qFuzzyIsNull(transform.m12()) && qFuzzyIsNull(transform.m21()) &&
                         transform.m11() > 0 && std::abs(transform.m11() - transform.m22()) < 1e-6;
    return upright ? std::optional(transform.m11()) : std::nullopt;
}

} // namespace

PictureItem::PictureItem(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void PictureItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        update();
    }
}

void PictureItem::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemSceneChange && data.window) {
        watchScales(this);
    } else if (change == ItemDevicePixelRatioHasChanged ||
               (m_isPutOff && (change == ItemVisibleHasChanged || change == ItemOpacityHasChanged))) {
        update();
    }
    QQuickItem::itemChange(change, data);
}

QSGNode *PictureItem::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *)
{
    std::unique_ptr<QSGImageNode> node(static_cast<QSGImageNode *>(oldNode));
    m_isPutOff = !isVisible() || opacity() <= 0;
    if (m_isPutOff) {
        return node.release(); // painted once it can be seen
    }
    if (width() <= 0 || height() <= 0) {
        m_shown = 0;
        return nullptr;
    }
    bool ok = false;
    const auto upright = uprightScale(itemTransform(nullptr, &ok));
    const double current = upright.value_or(m_pictureScale);
    if (current == m_lastScale) {
        m_pictureScale = current;
    } else { // moving: once it stands still, another look tells
        m_lastScale = current;
        if (!node) { // what grows from nothing does not start with the picture of nothing
            m_pictureScale = std::max(current, 1.0);
        }
        if (current != m_pictureScale) {
            QMetaObject::invokeMethod(this, &QQuickItem::update, Qt::QueuedConnection);
        }
    }
    const double scale = window()->effectiveDevicePixelRatio() * m_pictureScale;
    QByteArray key = pictureKey();
    key.append(reinterpret_cast<const char *>(&scale), sizeof scale);
    const Picture picture = cachedPicture(key, [&] { return paintPicture(scale); });
    if (picture.image.isNull()) {
        m_shown = 0;
        return nullptr;
    }
    if (!node) {
        node.reset(window()->createImageNode());
        node->setOwnsTexture(true);
        m_shown = 0;
    }
    if (m_shown != picture.image.cacheKey()) {
        node->setTexture(
            window()->createTextureFromImage(picture.image, QQuickWindow::TextureHasAlphaChannel));
        m_shown = picture.image.cacheKey();
    }
    node->setRect(QRectF(-QPointF(picture.origin) / scale, QSizeF(picture.image.size()) / scale));
    const bool exact = upright && m_pictureScale == *upright;
    node->setFiltering(exact ? QSGTexture::Nearest : QSGTexture::Linear);
    return node.release();
}

} // namespace kelmoth
