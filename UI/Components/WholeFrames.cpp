#include "UI/Components/WholeFrames.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGRenderNode>

#include <cmath>
#include <memory>

namespace kelmoth {

namespace {

/// Changes before each frame, and so calls for all that lies under it.
class FrameNode : public QSGRenderNode {
public:
    explicit FrameNode(QQuickWindow &window) : m_window(window) { setFlag(UsePreprocess); }

    void look(const QRectF &rect, const QColor &edge)
    {
        m_rect = rect;
        m_edge = edge;
    }

    void preprocess() override { markDirty(DirtyMaterial); }
    QRectF rect() const override { return m_rect; }
    StateFlags changedStates() const override { return {}; }

    void render(const RenderState *) override
    {
        auto *painter = static_cast<QPainter *>(
            m_window.rendererInterface()->getResource(&m_window, QSGRendererInterface::PainterResource));
        if (!painter || m_edge.alpha() == 0) {
            return;
        }
        const auto *device = painter->device();
        const double scale = device->devicePixelRatio();
        const QSizeF whole(device->width() / scale, device->height() / scale);
        const QSizeF drawn(std::floor(whole.width()), std::floor(whole.height()));
        painter->resetTransform();
        painter->setRenderHint(QPainter::Antialiasing, false);
        painter->fillRect(QRectF(drawn.width(), 0, 1, whole.height()), m_edge);
        painter->fillRect(QRectF(0, drawn.height(), whole.width(), 1), m_edge);
    }

private:
    QQuickWindow &m_window;
    QRectF m_rect;
    QColor m_edge;
};

} // namespace

WholeFrames::WholeFrames(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void WholeFrames::setEdgeColor(const QColor &color)
{
    if (m_edgeColor != color) {
        m_edgeColor = color;
        update();
        Q_EMIT edgeColorChanged();
    }
}

void WholeFrames::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
    QQuickItem::itemChange(change, data);
}

QSGNode *WholeFrames::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *)
{
    std::unique_ptr<FrameNode> node(static_cast<FrameNode *>(oldNode));
    const double scale = window()->effectiveDevicePixelRatio();
    const bool isNeeded = window()->rendererInterface()->graphicsApi() == QSGRendererInterface::Software &&
                          scale != std::round(scale);
    if (!isNeeded) {
        return nullptr;
    }
    if (!node) {
        node = std::make_unique<FrameNode>(*window());
    }
    node->look(boundingRect(), m_edgeColor);
    return node.release();
}

} // namespace kelmoth
