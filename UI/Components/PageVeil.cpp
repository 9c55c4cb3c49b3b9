#include "UI/Components/PageVeil.h"

#include "UI/Components/Blur.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <memory>

namespace kelmoth {

PageVeil::PageVeil(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void PageVeil::setSource(QQuickItem *source)
{
    if (m_source == source) {
        return;
    }
    m_source = source;
    reset();
    Q_EMIT sourceChanged();
}

void PageVeil::setActive(bool active)
{
    if (m_active == active) {
        return;
    }
    const QImage prepared = active ? m_veil : QImage();
    m_active = active;
    reset();
    if (!prepared.isNull()) {
        m_veil = prepared;
        Q_EMIT readyChanged();
    }
    Q_EMIT activeChanged();
}

void PageVeil::prepare()
{
    if (const auto result = m_active ? nullptr : askForGrab()) {
        (void)window()->grabWindow(); // draws what has been asked for
        if (!result->image().isNull()) {
            paint(result->image());
        }
    }
}

void PageVeil::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange) {
        reset();
    }
}

/// Starts from nothing: no picture yet, and eyes on the window's frames where pictures are wanted.
void PageVeil::reset()
{
    disconnect(m_frames);
    m_grab.reset();
    m_grabbed = {};
    if (!m_veil.isNull()) {
        m_veil = {};
        Q_EMIT readyChanged();
    }
    update();
    if (m_active && m_source && window()) {
        m_frames = connect(window(), &QQuickWindow::frameSwapped, this, &PageVeil::grab);
        grab();
    }
}

/// What the next frame grabs; none where there is nothing to see.
QSharedPointer<QQuickItemGrabResult> PageVeil::askForGrab() const
{
    if (!m_source || !window() || !window()->isVisible() || m_source->width() < 1 || m_source->height() < 1) {
        return {};
    }
    return m_source->grabToImage(QSizeF(m_source->width(), m_source->height()).toSize());
}

/// A grab costs a frame of its own, which calls for no other: one is under way then. A frame more may show
/// what the grab has missed. A grab that shows something new changes this item, whose frame is followed by a
/// grab that finds nothing new; so it comes to rest.
void PageVeil::grab()
{
    if (m_grab) {
        ++m_framesMeanwhile;
        return;
    }
    m_grab = askForGrab();
    if (!m_grab) {
        return;
    }
    m_framesMeanwhile = 0;
    connect(m_grab.data(), &QQuickItemGrabResult::ready, this, [this] {
        const QImage image = m_grab ? m_grab->image() : QImage();
        m_grab.reset();
        show(image);
        if (m_framesMeanwhile > 1) {
            grab();
        }
    });
}

void PageVeil::show(const QImage &grabbed)
{
    if (grabbed.isNull() || grabbed == m_grabbed) {
        return;
    }
    const bool first = !isReady();
    m_grabbed = grabbed;
    paint(grabbed);
    update();
    if (first) {
        Q_EMIT readyChanged();
    }
}

void PageVeil::paint(const QImage &grabbed)
{
    constexpr double radius = 3;
    const double scale = m_source && m_source->width() > 0 ? grabbed.width() / m_source->width() : 1.0;
    m_veil = blurred(grabbed.convertToFormat(QImage::Format_ARGB32_Premultiplied), radius * scale);
    for (int y = 0; y < m_veil.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(m_veil.scanLine(y));
        for (int x = 0; x < m_veil.width(); ++x) {
            const int gray = (qRed(pixels[x]) * 54 + qGreen(pixels[x]) * 183 + qBlue(pixels[x]) * 19) / 256;
            pixels[x] = qRgba(gray, gray, gray, qAlpha(pixels[x]));
        }
    }
}

QSGNode *PageVeil::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *)
{
    std::unique_ptr<QSGImageNode> node(static_cast<QSGImageNode *>(oldNode));
    if (!isReady() || !m_source) {
        m_shown = 0;
        return nullptr;
    }
    if (!node) {
        node.reset(window()->createImageNode());
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
        m_shown = 0;
    }
    if (m_shown != m_veil.cacheKey()) {
        node->setTexture(window()->createTextureFromImage(m_veil, QQuickWindow::TextureHasAlphaChannel));
        m_shown = m_veil.cacheKey();
    }
    node->setRect(QRectF(0, 0, m_source->width(), m_source->height()));
    return node.release();
}

} // namespace kelmoth
