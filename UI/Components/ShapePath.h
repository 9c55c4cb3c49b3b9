#pragma once

#include <QImage>
#include <QPainterPath>

namespace kelmoth {

/// A rectangle whose corners begin to bend before the arc does, so that light runs smoothly along the edge;
/// `radius` is that of the arc in the corner's middle. Where there is no room the corners become plain arcs.
QPainterPath continuousRectangle(const QRectF &rectangle, double radius);

/// Leaves of a picture what lies within the shape.
void cut(QImage &image, const QPainterPath &shape);

} // namespace kelmoth
