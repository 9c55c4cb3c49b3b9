#pragma once

#include "UI/Components/PictureItem.h"
#include "UI/Components/SurfaceLook.h"

#include <QVariantList>

namespace kelmoth {

/// A filled shape with an optional gradient, border, shadow and blur. Everything is painted on the CPU and
/// looks the same with every renderer. Lengths in logical pixels; radii of shadow and blur are
/// standard deviations of a Gaussian.
class Surface : public kelmoth::PictureItem { // in full: so the type's description for qmllint names it
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Shape shape READ shape WRITE setShape NOTIFY shapeChanged)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    /// The gradient's other end; transparent: none, unless there is a third.
    Q_PROPERTY(QColor color2 READ color2 WRITE setColor2 NOTIFY color2Changed)
    /// A third stop at the end, the second then stands in the middle. Transparent fades out; unset: none.
    Q_PROPERTY(QColor color3 READ color3 WRITE setColor3 NOTIFY color3Changed)
    /// Any gradient: objects with `position` (0 to 1) and `color`. Not empty: used instead of the colours.
    Q_PROPERTY(QVariantList stops READ stops WRITE setStops NOTIFY stopsChanged)
    Q_PROPERTY(Direction gradientDirection READ gradientDirection WRITE setGradientDirection NOTIFY
                   gradientDirectionChanged)
    Q_PROPERTY(QColor borderColor READ borderColor WRITE setBorderColor NOTIFY borderColorChanged)
    Q_PROPERTY(double borderWidth READ borderWidth WRITE setBorderWidth NOTIFY borderWidthChanged)
    Q_PROPERTY(QColor shadowColor READ shadowColor WRITE setShadowColor NOTIFY shadowColorChanged)
    Q_PROPERTY(double shadowRadius READ shadowRadius WRITE setShadowRadius NOTIFY shadowRadiusChanged)
    Q_PROPERTY(double shadowX READ shadowX WRITE setShadowX NOTIFY shadowXChanged)
    Q_PROPERTY(double shadowY READ shadowY WRITE setShadowY NOTIFY shadowYChanged)
    Q_PROPERTY(double blur READ blur WRITE setBlur NOTIFY blurChanged)
    /// Whether what the blur carries beyond the shape is cut off.
    Q_PROPERTY(bool clipped READ isClipped WRITE setClipped NOTIFY clippedChanged)

public:
    enum Shape {
        Rectangle = SurfaceLook::Rectangle,
        Circle = SurfaceLook::Circle,
        Capsule = SurfaceLook::Capsule
    };
    Q_ENUM(Shape)
    enum Direction {
        TopLeadingToBottomTrailing = SurfaceLook::TopLeadingToBottomTrailing,
        TopToBottom = SurfaceLook::TopToBottom,
        LeadingToTrailing = SurfaceLook::LeadingToTrailing
    };
    Q_ENUM(Direction)

    using PictureItem::PictureItem;

    Shape shape() const { return static_cast<Shape>(m_look.shape); }
    double radius() const { return m_look.radius; }
    QColor color() const { return m_color; }
    QColor color2() const { return m_color2; }
    QColor color3() const { return m_color3; }
    QVariantList stops() const { return m_stops; }
    Direction gradientDirection() const { return static_cast<Direction>(m_look.direction); }
    QColor borderColor() const { return m_look.borderColor; }
    double borderWidth() const { return m_look.borderWidth; }
    QColor shadowColor() const { return m_look.shadowColor; }
    double shadowRadius() const { return m_look.shadowRadius; }
    double shadowX() const { return m_look.shadowOffset.x(); }
    double shadowY() const { return m_look.shadowOffset.y(); }
    double blur() const { return m_look.blurRadius; }
    bool isClipped() const { return m_look.isClipped; }

    void setShape(Shape shape)
    {
        set(m_look.shape, static_cast<SurfaceLook::Shape>(shape), &Surface::shapeChanged);
    }
    void setRadius(double radius) { set(m_look.radius, qMax(radius, 0.0), &Surface::radiusChanged); }
    void setColor(const QColor &color) { set(m_color, color, &Surface::colorChanged); }
    void setColor2(const QColor &color) { set(m_color2, color, &Surface::color2Changed); }
    void setColor3(const QColor &color) { set(m_color3, color, &Surface::color3Changed); }
    void setStops(const QVariantList &stops) { set(m_stops, stops, &Surface::stopsChanged); }
    void setGradientDirection(Direction direction)
    {
        set(m_look.direction, static_cast<SurfaceLook::Direction>(direction),
            &Surface::gradientDirectionChanged);
    }
    void setBorderColor(const QColor &color) { set(m_look.borderColor, color, &Surface::borderColorChanged); }
    void setBorderWidth(double width)
    {
        set(m_look.borderWidth, qMax(width, 0.0), &Surface::borderWidthChanged);
    }
    void setShadowColor(const QColor &color) { set(m_look.shadowColor, color, &Surface::shadowColorChanged); }
    void setShadowRadius(double radius)
    {
        set(m_look.shadowRadius, qBound(0.0, radius, 200.0), &Surface::shadowRadiusChanged);
    }
    void setShadowX(double x)
    {
        set(m_look.shadowOffset.rx(), qBound(-200.0, x, 200.0), &Surface::shadowXChanged);
    }
    void setShadowY(double y)
    {
        set(m_look.shadowOffset.ry(), qBound(-200.0, y, 200.0), &Surface::shadowYChanged);
    }
    void setBlur(double radius) { set(m_look.blurRadius, qBound(0.0, radius, 200.0), &Surface::blurChanged); }
    void setClipped(bool clipped) { set(m_look.isClipped, clipped, &Surface::clippedChanged); }

Q_SIGNALS:
    void shapeChanged();
    void radiusChanged();
    void colorChanged();
    void color2Changed();
    void color3Changed();
    void stopsChanged();
    void gradientDirectionChanged();
    void borderColorChanged();
    void borderWidthChanged();
    void shadowColorChanged();
    void shadowRadiusChanged();
    void shadowXChanged();
    void shadowYChanged();
    void blurChanged();
    void clippedChanged();

protected:
    QByteArray pictureKey() const override { return look().key(); }
    Picture paintPicture(double scale) const override { return paintSurface(look(), scale); }

private:
    SurfaceLook look() const;

    template <typename Value> void set(Value &member, const Value &value, void (Surface::*changed)())
    {
        if (member != value) {
            member = value;
            pictureChanged();
            Q_EMIT(this->*changed)();
        }
    }

    SurfaceLook m_look; ///< without size and fill
    QColor m_color = Qt::transparent;
    QColor m_color2;
    QColor m_color3;
    QVariantList m_stops;
};

} // namespace kelmoth
