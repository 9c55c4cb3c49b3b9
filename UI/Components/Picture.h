#pragma once

#include <QByteArray>
#include <QImage>
#include <QPoint>

#include <functional>

namespace kelmoth {

/// What an item draws, in device pixels.
struct Picture {
    QImage image;  ///< ARGB32_Premultiplied; shadows and blurs reach beyond the item
    QPoint origin; ///< where the item's top left corner lies in the image
};

/// The picture of `key`: the one that was painted before, or a new one. Equal keys must mean equal pictures.
/// The pictures used last are kept, up to some megabytes. Main thread.
Picture cachedPicture(const QByteArray &key, const std::function<Picture()> &paint);

/// How far a Gaussian of radius `radius`, its standard deviation, can be seen.
double reachOfBlur(double radius);

} // namespace kelmoth
