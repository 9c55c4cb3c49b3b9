#pragma once

#include "UI/Components/PictureItem.h"
#include "UI/Components/SymbolLook.h"

namespace kelmoth {

/// A symbol in one colour or a gradient from the top left to the bottom right. By itself as large as its
/// icon; in a larger item the icon stands in the middle.
class Symbol : public kelmoth::PictureItem { // in full: so the type's description for qmllint names it
    Q_OBJECT
    QML_ELEMENT
    /// As the design calls it, such as "gearshape.fill"; an unknown one shows nothing.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    /// Not empty: an SVG picture of the program to show instead, in its own colours, cut to corners of
    /// `radius`.
    Q_PROPERTY(QString file READ file WRITE setFile NOTIFY fileChanged)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)
    /// The size of text that it goes with; the icon is a fifth larger.
    Q_PROPERTY(double size READ fontSize WRITE setFontSize NOTIFY sizeChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    /// Further stops of a gradient; unset: none.
    Q_PROPERTY(QColor color2 READ color2 WRITE setColor2 NOTIFY color2Changed)
    Q_PROPERTY(QColor color3 READ color3 WRITE setColor3 NOTIFY color3Changed)
    Q_PROPERTY(bool bold READ isBold WRITE setBold NOTIFY boldChanged)
    Q_PROPERTY(QColor shadowColor READ shadowColor WRITE setShadowColor NOTIFY shadowColorChanged)
    Q_PROPERTY(double shadowRadius READ shadowRadius WRITE setShadowRadius NOTIFY shadowRadiusChanged)
    Q_PROPERTY(QColor shadow2Color READ shadow2Color WRITE setShadow2Color NOTIFY shadow2ColorChanged)
    Q_PROPERTY(double shadow2Radius READ shadow2Radius WRITE setShadow2Radius NOTIFY shadow2RadiusChanged)

public:
    explicit Symbol(QQuickItem *parent = nullptr);

    QString name() const { return m_look.name; }
    QString file() const { return m_look.file; }
    double radius() const { return m_look.radius; }
    double fontSize() const { return m_fontSize; }
    QColor color() const { return m_color; }
    QColor color2() const { return m_color2; }
    QColor color3() const { return m_color3; }
    bool isBold() const { return m_look.bold; }
    QColor shadowColor() const { return m_look.shadows[0].color; }
    double shadowRadius() const { return m_look.shadows[0].radius; }
    QColor shadow2Color() const { return m_look.shadows[1].color; }
    double shadow2Radius() const { return m_look.shadows[1].radius; }

    void setName(const QString &name)
    {
        set(m_look.name, name, &Symbol::nameChanged);
        updateSize();
    }
    void setFile(const QString &file) { set(m_look.file, file, &Symbol::fileChanged); }
    void setRadius(double radius) { set(m_look.radius, radius, &Symbol::radiusChanged); }
    void setFontSize(double size);
    void setColor(const QColor &color) { set(m_color, color, &Symbol::colorChanged); }
    void setColor2(const QColor &color) { set(m_color2, color, &Symbol::color2Changed); }
    void setColor3(const QColor &color) { set(m_color3, color, &Symbol::color3Changed); }
    void setBold(bool bold) { set(m_look.bold, bold, &Symbol::boldChanged); }
    void setShadowColor(const QColor &color)
    {
        set(m_look.shadows[0].color, color, &Symbol::shadowColorChanged);
    }
    void setShadowRadius(double radius)
    {
        set(m_look.shadows[0].radius, qBound(0.0, radius, 200.0), &Symbol::shadowRadiusChanged);
    }
    void setShadow2Color(const QColor &color)
    {
        set(m_look.shadows[1].color, color, &Symbol::shadow2ColorChanged);
    }
    void setShadow2Radius(double radius)
    {
        set(m_look.shadows[1].radius, qBound(0.0, radius, 200.0), &Symbol::shadow2RadiusChanged);
    }

Q_SIGNALS:
    void nameChanged();
    void fileChanged();
    void radiusChanged();
    void sizeChanged();
    void colorChanged();
    void color2Changed();
    void color3Changed();
    void boldChanged();
    void shadowColorChanged();
    void shadowRadiusChanged();
    void shadow2ColorChanged();
    void shadow2RadiusChanged();

protected:
    QByteArray pictureKey() const override { return look().key(); }
    Picture paintPicture(double scale) const override { return paintSymbol(look(), scale); }

private:
    SymbolLook look() const;
    void updateSize();

    template <typename Value> void set(Value &member, const Value &value, void (Symbol::*changed)())
    {
        if (member != value) {
            member = value;
            pictureChanged();
            Q_EMIT(this->*changed)();
        }
    }

    SymbolLook m_look; ///< without sizes and fill
    double m_fontSize = 0;
    QColor m_color = Qt::black;
    QColor m_color2;
    QColor m_color3;
};

} // namespace kelmoth
