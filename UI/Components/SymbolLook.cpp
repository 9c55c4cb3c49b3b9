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

const SymbolIcon *iconNamed(const QString &name)
{
    const QByteArray bytes = name.toUtf8();
    return symbolNamed({bytes.data(), static_cast<std::size_t>(bytes.size())});
}

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
    if (icon.charge > 0) { // the inside of the battery is twelve units wide
        const QByteArray width = QByteArray::number(icon.charge * 0.12, 'f', 2);
        svg.replace("</svg>",
                    R"(<path stroke="none" d="M2.667 5.333h)" + width + "v5.334h-" + width + R"(z"/></svg>)");
    }
    return svg;
}

/// Lines of less than a pixel look faint beside text: small icons are drawn stronger, and lines more than
/// solids.
double strokeFor(const SymbolIcon &icon, double pixels, bool bold)
{
    const double stroke = std::max(0.0, 1 - pixels / SymbolIcon::grid) * 0.5 + (bold ? 0.45 : 0.0);
    switch (icon.kind) {
    case SymbolIcon::solid:
        return stroke;
    case SymbolIcon::line:
        return stroke + 0.3;
    case SymbolIcon::fine:
        return stroke / 3;
    case SymbolIcon::cutOut:
        break;
    }
    return 0;
}

/// Widens what is cut out of a solid: takes its outline away, and what that takes outside is given before.
void renderStronger(QPainter &painter, const SymbolIcon &icon, QSize canvas, const QRectF &box)
{
    constexpr double stroke = 0.6;
    const double growth = box.height() * stroke / (SymbolIcon::grid - stroke) / 2;
    const QRectF grown = box.adjusted(-growth, -growth, growth, growth);
    QSvgRenderer(drawing(icon, 0)).render(&painter, grown);
    QImage outline(canvas, QImage::Format_ARGB32_Premultiplied);
    outline.fill(Qt::transparent);
    {
        QByteArray svg = drawing(icon, stroke);
        QPainter lines(&outline);
        QSvgRenderer(svg.replace(R"(fill="currentColor")", R"(fill="none")")).render(&lines, grown);
    }
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(0, 0, outline);
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
    const SymbolIcon *icon = iconNamed(look.name);
    if (!icon) {
        return image;
    }
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    if (look.bold && icon->kind == SymbolIcon::cutOut) {
        renderStronger(painter, *icon, canvas, box);
        return image;
    }
    QSvgRenderer renderer(drawing(*icon, strokeFor(*icon, box.height(), look.bold)));
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

QSizeF iconSize(const QString &name, double height)
{
    const SymbolIcon *icon = iconNamed(name);
    return {icon ? height * icon->width / SymbolIcon::grid : height, height};
}

Picture paintSymbol(const SymbolLook &look, double scale)
{
    double reach = 0;
    for (const auto &shadow : look.shadows) {
        reach = std::max(reach, shadow.color.alpha() > 0 ? reachOfBlur(shadow.radius) : 0);
    }
    // A strong or turned icon passes its box a little.
    const int margin = static_cast<int>(std::ceil(reach * scale)) + 2;
    const QSize icon = (iconSize(look.name, look.side) * scale).toSize().expandedTo({1, 1});
    const QSize item(qRound(look.size.width() * scale), qRound(look.size.height() * scale));
    const QSize canvas = item.expandedTo(icon) + QSize(2 * margin, 2 * margin);
    constexpr int longest = 4096;
    if (canvas.width() > longest || canvas.height() > longest) {
        return {};
    }
    const QPoint corner((canvas.width() - icon.width()) / 2, (canvas.height() - icon.height()) / 2);
    const QRectF box(corner, QSizeF(icon));

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
