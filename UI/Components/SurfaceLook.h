#pragma once

#include "UI/Components/Picture.h"

#include <QColor>
#include <QGradient>
#include <QObject>
#include <QPointF>
#include <QSizeF>
#include <QtQml/qqmlregistration.h>

namespace kelmoth {

/// How a surface looks; lengths in logical pixels.
struct SurfaceLook {
    Q_GADGET

public:
    enum Shape {
        Rectangle, ///< with continuous corners of `radius`
        Circle,    ///< the largest in the middle
        Capsule    ///< the shorter sides are half circles
    };
    Q_ENUM(Shape)
    enum Direction { TopLeadingToBottomTrailing, TopToBottom, LeadingToTrailing };
    Q_ENUM(Direction)

    QSizeF size;
    Shape shape = Rectangle;
    double radius = 0;
    QGradientStops fill; ///< one stop: a plain colour; none: nothing is filled
    Direction direction = TopLeadingToBottomTrailing;
    QColor borderColor;
    double borderWidth = 0; ///< the border lies inside the shape
    QColor shadowColor;
    double shadowRadius = 0; ///< the standard deviation of a Gaussian
    QPointF shadowOffset;
    double blurRadius = 0;  ///< of fill and border; the same
    bool isClipped = false; ///< what the blur carries beyond the shape is cut off

    QByteArray key() const;
};

/// Paints the surface for `scale` device pixels to a logical one. The surface itself ends on whole pixels.
Picture paintSurface(const SurfaceLook &look, double scale);

} // namespace kelmoth
