#include "UI/Components/Symbol.h"

namespace kelmoth {
namespace {

/// A symbol's box beside text of this size, on whole logical pixels.
double boxFor(double fontSize)
{
    return qRound(fontSize * 1.2);
}

} // namespace

Symbol::Symbol(QQuickItem *parent) : PictureItem(parent)
{
    for (auto &shadow : m_look.shadows) {
        shadow.color = Qt::transparent;
    }
    setFontSize(13);
}

void Symbol::setFontSize(double size)
{
    if (size == m_fontSize || size < 1 || size > 500) {
        return;
    }
    m_fontSize = size;
    updateSize();
    pictureChanged();
    Q_EMIT sizeChanged();
}

void Symbol::updateSize()
{
    const QSizeF size = iconSize(m_look.name, boxFor(m_fontSize));
    setImplicitSize(size.width(), size.height());
}

SymbolLook Symbol::look() const
{
    SymbolLook look = m_look;
    look.size = QQuickItem::size();
    look.side = boxFor(m_fontSize);
    if (m_color3.isValid()) {
        look.fill = {{0.0, m_color}, {0.5, m_color2}, {1.0, m_color3}};
    } else if (m_color2.isValid()) {
        look.fill = {{0.0, m_color}, {1.0, m_color2}};
    } else {
        look.fill = {{0.0, m_color}};
    }
    return look;
}

} // namespace kelmoth
