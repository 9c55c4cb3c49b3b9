#include "UI/Components/ShapePath.h"

#include <QPainter>
#include <QTransform>
#include <QtMath>

#include <algorithm>
#include <array>
#include <cmath>

namespace kelmoth {
namespace {

/// Corners that begin this much of a radius earlier than an arc look continuous.
constexpr double smoothing = 0.6;

/// The ten points of one corner with its tip at the origin, from the edge that comes along the negative x
/// axis to the edge that leaves along the positive y axis: a start and three cubic curves (ease in, arc, ease
/// out).
std::array<QPointF, 10> corner(double radius, double smooth)
{
    const double reach = (1 + smooth) * radius;
    const double arcAngle = M_PI_2 * (1 - smooth);
    const double chord = std::sin(arcAngle / 2) * radius * M_SQRT2;
    const double bend = M_PI_4 * smooth;
    const double c = radius * std::tan(bend / 2) * std::cos(bend);
    const double d = c * std::tan(bend);
    const double b = (reach - chord - c - d) / 3;

    const QPointF arcStart(-reach + 3 * b + c, d);
    const QPointF normal = (arcStart - QPointF(-radius, radius)) / radius;
    const double handle = 4.0 / 3.0 * std::tan(arcAngle / 4) * radius;

    std::array<QPointF, 10> points;
    points[0] = {-reach, 0};
    points[1] = {-reach + 2 * b, 0};
    points[2] = {-reach + 3 * b, 0};
    points[3] = arcStart;
    points[4] = arcStart + handle * QPointF(-normal.y(), normal.x());
    for (std::size_t i = 0; i < 5; ++i) { // the other half mirrors the first
        points[9 - i] = {-points[i].y(), -points[i].x()};
    }
    return points;
}

} // namespace

QPainterPath continuousRectangle(const QRectF &rectangle, double radius)
{
    QPainterPath path;
    const double room = std::min(rectangle.width(), rectangle.height()) / 2;
    const double bounded = std::clamp(radius, 0.0, room);
    if (bounded < 0.01) {
        path.addRect(rectangle);
        return path;
    }
    const auto points = corner(bounded, std::clamp(room / bounded - 1, 0.0, smoothing));
    const std::array tips{rectangle.topRight(), rectangle.bottomRight(), rectangle.bottomLeft(),
                          rectangle.topLeft()};
    for (std::size_t i = 0; i < tips.size(); ++i) {
        QTransform place = QTransform::fromTranslate(tips[i].x(), tips[i].y());
        place.rotate(90.0 * static_cast<double>(i));
        if (i == 0) {
            path.moveTo(place.map(points[0]));
        } else {
            path.lineTo(place.map(points[0]));
        }
        for (std::size_t p = 1; p + 2 < points.size(); p += 3) {
            path.cubicTo(place.map(points[p]), place.map(points[p + 1]), place.map(points[p + 2]));
        }
    }
    path.closeSubpath();
    return path;
}

void cut(QImage &image, const QPainterPath &shape)
{
    QImage mask(image.size(), QImage::Format_ARGB32_Premultiplied);
    mask.fill(Qt::transparent);
    {
        QPainter painter(&mask);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(shape, Qt::black);
    }
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
}

} // namespace kelmoth
