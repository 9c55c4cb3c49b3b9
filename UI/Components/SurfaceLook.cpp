#include "UI/Components/SurfaceLook.h"

#include "UI/Components/Blur.h"
#include "UI/Components/ShapePath.h"

#include <QDataStream>
#include <QIODevice>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kelmoth {
namespace {

bool visible(const QColor &color)
{
    return color.isValid() && color.alpha() > 0;
}

QPainterPath outline(const SurfaceLook &look, const QRectF &box, double radius)
{
    switch (look.shape) {
    case SurfaceLook::Rectangle:
        return continuousRectangle(box, radius);
    case SurfaceLook::Capsule:
        return continuousRectangle(box, std::min(box.width(), box.height()) / 2);
    case SurfaceLook::Circle:
        break;
    }
    const double side = std::min(box.width(), box.height());
    QPainterPath circle;
    circle.addEllipse(box.center(), side / 2, side / 2);
    return circle;
}

QBrush brush(const SurfaceLook &look, const QRectF &box)
{
    if (look.fill.size() == 1) {
        return look.fill.first().second;
    }
    QLinearGradient gradient(box.topLeft(), box.bottomRight());
    if (look.direction == SurfaceLook::TopToBottom) {
        gradient.setFinalStop(box.bottomLeft());
    } else if (look.direction == SurfaceLook::LeadingToTrailing) {
        gradient.setFinalStop(box.topRight());
    }
    gradient.setStops(look.fill);
    return gradient;
}

QImage canvas(QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void paintShape(QPainter &painter, const SurfaceLook &look, const QRectF &box, double scale)
{
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = look.radius * scale;
    if (!look.fill.isEmpty()) {
        painter.fillPath(outline(look, box, radius), brush(look, box));
    }
    if (look.borderWidth > 0 && visible(look.borderColor)) {
        const double width = look.borderWidth * scale;
        const double inset = width / 2;
        const QRectF middle = box.adjusted(inset, inset, -inset, -inset);
        painter.strokePath(outline(look, middle, std::max(radius - inset, 0.0)),
                           QPen(look.borderColor, width));
    }
}

/// The shadow of the whole shape, but not under it, where a translucent fill would show it.
QImage shadow(const SurfaceLook &look, QSize size, const QRectF &box, double scale)
{
    QImage mask = canvas(size);
    const QPainterPath shape = outline(look, box, look.radius * scale);
    {
        QPainter painter(&mask);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(look.shadowOffset * scale);
        painter.fillPath(shape, Qt::black);
    }
    Plane alpha = alphaOf(mask);
    blur(alpha, look.shadowRadius * scale);
    QImage image = tinted(alpha, look.shadowColor);
    const bool opaque =
        std::ranges::all_of(look.fill, [](const auto &stop) { return stop.second.alpha() == 255; });
    if (look.fill.isEmpty() || !opaque) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.fillPath(shape, Qt::black);
    }
    return image;
}

} // namespace

QByteArray SurfaceLook::key() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << size << int(shape) << radius << fill << int(direction) << borderColor << borderWidth
           << shadowColor << shadowRadius << shadowOffset << blurRadius << isClipped;
    return bytes;
}

Picture paintSurface(const SurfaceLook &look, double scale)
{
    const bool hasShadow = visible(look.shadowColor);
    const double reach =
        std::max(hasShadow ? reachOfBlur(look.shadowRadius) +
                                 std::max(std::abs(look.shadowOffset.x()), std::abs(look.shadowOffset.y()))
                           : 0.0,
                 reachOfBlur(look.blurRadius));
    const int margin = static_cast<int>(std::ceil(reach * scale));
    const QSize shape(std::max(qRound(look.size.width() * scale), 1),
                      std::max(qRound(look.size.height() * scale), 1));
    const QRectF box(QPointF(margin, margin), QSizeF(shape));
    const QSize size = shape + QSize(2 * margin, 2 * margin);
    constexpr int longest = 8192;
    if (size.width() > longest || size.height() > longest) {
        return {};
    }

    QImage image = canvas(size);
    {
        QPainter painter(&image);
        paintShape(painter, look, box, scale);
    }
    if (look.blurRadius > 0) {
        image = blurred(image, look.blurRadius * scale);
        if (look.isClipped) {
            cut(image, outline(look, box, look.radius * scale));
        }
    }
    if (hasShadow) {
        QImage under = shadow(look, size, box, scale);
        QPainter(&under).drawImage(0, 0, image);
        image = under;
    }
    if (look.isClipped && !hasShadow) { // nothing lies beyond the shape
        return {image.copy(box.toRect()), {}};
    }
    return {image, QPoint(margin, margin)};
}

} // namespace kelmoth
