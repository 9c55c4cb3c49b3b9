#include "UI/Components/GradientText.h"

#include <QDataStream>
#include <QFontMetricsF>
#include <QIODevice>
#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kelmoth {

GradientText::GradientText(QQuickItem *parent) : PictureItem(parent)
{
    relook();
}

void GradientText::setText(const QString &text)
{
    m_text = text;
    relook();
}

void GradientText::setFontSize(int size)
{
    m_size = std::clamp(size, 1, 200);
    relook();
}

void GradientText::setWeight(int weight)
{
    m_weight = std::clamp(weight, 1, 1000);
    relook();
}

void GradientText::setColor(const QColor &color)
{
    m_color = color;
    relook();
}

void GradientText::setColor2(const QColor &color)
{
    m_color2 = color;
    relook();
}

QFont GradientText::font() const
{
    QFont font;
    font.setPixelSize(m_size);
    font.setWeight(static_cast<QFont::Weight>(m_weight));
    return font;
}

void GradientText::relook()
{
    const QFontMetricsF metrics(font());
    setImplicitSize(std::ceil(metrics.horizontalAdvance(m_text)), std::ceil(metrics.height()));
    pictureChanged();
    Q_EMIT lookChanged();
}

QByteArray GradientText::pictureKey() const
{
    QByteArray key;
    QDataStream stream(&key, QIODevice::WriteOnly);
    stream << QByteArrayLiteral("text") << m_text << font() << m_color << m_color2 << size();
    return key;
}

Picture GradientText::paintPicture(double scale) const
{
    QImage image((size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QLinearGradient gradient(0, 0, width(), 0);
    gradient.setColorAt(0, m_color);
    gradient.setColorAt(1, m_color2);
    QPainter painter(&image);
    painter.scale(scale, scale);
    painter.setFont(font());
    painter.setPen(QPen(QBrush(gradient), 0));
    painter.drawText(QRectF(QPointF(), size()), Qt::AlignCenter, m_text);
    return {image, {}};
}

} // namespace kelmoth
