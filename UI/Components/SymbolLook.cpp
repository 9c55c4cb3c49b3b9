#include "UI/Components/SymbolLook.h"

#include "UI/Components/Blur.h"
#include "UI/Components/ShapePath.h"
#include "UI/Components/SymbolTable.h"

#include <QDataStream>
#include <QFile>
#include <QIODevice>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>
#include <ranges>

namespace kelmoth {
namespace {

constexpr double grid = 16; ///< the icons are drawn on 16 x 16 units, with lines one unit wide

/// An icon's drawing, made stronger by a stroke of so many units around it.
QByteArray drawing(const SymbolIcon &icon, double stroke)
{
    QFile file(QStringLiteral(":/kelmoth/symbols/%1.svg")
                   .arg(QLatin1String(icon.icon.data(), qsizetype(icon.icon.size()))));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QByteArray svg = file.readAll();
    if (stroke > 0) {
        const QByteArray attributes = R"(<svg stroke="#000" stroke-linejoin="round" stroke-width=")" +
                                      QByteArray::number(stroke, 'f', 2) + R"(" )";
        svg.replace("<svg ", attributes);
    }
    if (icon.charge > 0) { // the inside of the battery reaches from 2 to 12
        const QByteArray width = QByteArray::number(icon.charge / 10.0, 'f', 1);
        svg.replace("</svg>", R"(<path stroke="none" d="M2 6h)" + width + "v4h-" + width + R"(z"/></svg>)");
    }
    return svg;
}

/// Lines of less than a pixel look faint beside text: small icons are drawn stronger.
double strokeFor(const SymbolIcon &icon, double pixels, bool bold)
{
    const double stroke = std::max(0.0, 1 - pixels / grid) * 0.5 + (bold ? 0.45 : 0.0);
    return icon.fine ? stroke / 3 : stroke;
}

QImage mask(const SymbolLook &look, QSize canvas, const QRectF &box, double scale)
{
    QImage image(canvas, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (!look.file.isEmpty()) {
        QSvgRenderer renderer(look.file);
        QPainter painter(&image);
        renderer.render(&painter, box);
        painter.end();
        cut(image, continuousRectangle(box, look.radius * scale));
        return image;
    }
    const QByteArray name = look.name.toUtf8();
    const SymbolIcon *icon = symbolNamed({name.data(), static_cast<std::size_t>(name.size())});
    if (!icon) {
        return image;
    }
    QSvgRenderer renderer(drawing(*icon, strokeFor(*icon, box.width(), look.bold)));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(box.center());
    painter.rotate(icon->turn);
    renderer.render(&painter, QRectF(-box.width() / 2, -box.height() / 2, box.width(), box.height()));
    return image;
}

QBrush brush(const QGradientStops &fill, const QRectF &box)
{
    if (fill.size() == 1) {
        return fill.first().second;
    }
    QLinearGradient gradient(box.topLeft(), box.bottomRight());
    gradient.setStops(fill);
    return gradient;
}

} // namespace

QByteArray SymbolLook::key() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << size << side << name << file << radius << fill << bold;
    for (const Shadow &shadow : shadows) {
        stream << shadow.color << shadow.radius;
    }
    return bytes;
}

Picture paintSymbol(const SymbolLook &look, double scale)
{
    double reach = 0;
    for (const auto &shadow : look.shadows) {
        reach = std::max(reach, shadow.color.alpha() > 0 ? reachOfBlur(shadow.radius) : 0);
    }
    // A strong or turned icon passes its box a little.
    const int margin = static_cast<int>(std::ceil(reach * scale)) + 2;
    const int side = std::max(qRound(look.side * scale), 1);
    const QSize item(qRound(look.size.width() * scale), qRound(look.size.height() * scale));
    const QSize canvas = item.expandedTo({side, side}) + QSize(2 * margin, 2 * margin);
    constexpr int longest = 4096;
    if (canvas.width() > longest || canvas.height() > longest) {
        return {};
    }
    const QPoint corner((canvas.width() - side) / 2, (canvas.height() - side) / 2);
    const QRectF box(corner, QSizeF(side, side));

    const QImage shape = mask(look, canvas, box, scale);
    QImage image(canvas, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    for (const auto &shadow : look.shadows | std::views::reverse) {
        if (shadow.color.alpha() > 0) {
            Plane alpha = alphaOf(shape);
            blur(alpha, shadow.radius * scale);
            painter.drawImage(0, 0, tinted(alpha, shadow.color));
        }
    }
    QImage filled = shape;
    if (look.file.isEmpty()) {
        QPainter tint(&filled);
        tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
        tint.fillRect(filled.rect(), brush(look.fill, box));
    }
    painter.drawImage(0, 0, filled);
    return {image, {(canvas.width() - item.width()) / 2, (canvas.height() - item.height()) / 2}};
}

} // namespace kelmoth
