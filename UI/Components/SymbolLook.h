#pragma once

#include "UI/Components/Picture.h"

#include <QColor>
#include <QGradient>
#include <QSizeF>
#include <QString>

#include <array>

namespace kelmoth {

/// How a symbol looks; lengths in logical pixels.
struct SymbolLook {
    struct Shadow {
        QColor color;
        double radius = 0; ///< the standard deviation of a Gaussian
    };

    QSizeF size;         ///< the icon stands in the middle
    double side = 0;     ///< of the icon's box: its height
    QString name;        ///< as the design calls it; an unknown one paints nothing
    QString file;        ///< not empty: an SVG picture to show instead, in its own colours
    double radius = 0;   ///< of the corners that the picture is cut to
    QGradientStops fill; ///< one stop: a plain colour; more run from the top left to the bottom right
    bool bold = false;
    std::array<Shadow, 2> shadows; ///< the second lies under the first

    QByteArray key() const;
};

/// What a symbol so high takes; most are as wide.
QSizeF iconSize(const QString &name, double height);

/// Paints the symbol for `scale` device pixels to a logical one.
Picture paintSymbol(const SymbolLook &look, double scale);

} // namespace kelmoth
