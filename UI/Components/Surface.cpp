#include "UI/Components/Surface.h"

namespace kelmoth {
namespace {

QGradientStops gradient(const QVariantList &stops)
{
    QGradientStops result;
    for (const QVariant &stop : stops) {
        const QVariantMap fields = stop.toMap();
        result.append({qBound(0.0, fields.value(QStringLiteral("position")).toDouble(), 1.0),
                       fields.value(QStringLiteral("color")).value<QColor>()});
    }
    return result;
}

} // namespace

SurfaceLook Surface::look() const
{
    SurfaceLook look = m_look;
    look.size = size();
    if (!m_stops.isEmpty()) {
        look.fill = gradient(m_stops);
    } else if (m_color3.isValid()) {
        look.fill = {{0.0, m_color}, {0.5, m_color2}, {1.0, m_color3}};
    } else if (m_color2.isValid() && m_color2.alpha() > 0) {
        look.fill = {{0.0, m_color}, {1.0, m_color2}};
    } else if (m_color.alpha() > 0) {
        look.fill = {{0.0, m_color}};
    }
    return look;
}

} // namespace kelmoth
