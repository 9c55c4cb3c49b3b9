#include "App/StatusPicture.h"

#include "UI/Components/SymbolLook.h"

#include <QIconEngine>
#include <QList>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <array>

namespace kelmoth {

namespace {

const QColor light(0xF5, 0xF5, 0xF7);
const QColor dark(0x2E, 0x2E, 0x33);

/// Paints each size when a host asks for it.
class MouseIcon : public QIconEngine {
public:
    MouseIcon(bool isLight, double alpha) : m_isLight(isLight), m_alpha(alpha) {}

    QIconEngine *clone() const override { return new MouseIcon(*this); }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        const int side = std::min(rect.width(), rect.height());
        SymbolLook look;
        look.size = QSizeF(side, side);
        look.side = side * 0.86; // the rim needs room, too
        look.name = QStringLiteral("computermouse.fill");
        look.fill = {{0.0, m_isLight ? light : dark}};
        look.shadows[0] = {.color = m_isLight ? dark : light, .radius = std::max(1.0, side / 16.0)};
        const auto picture = paintSymbol(look, 1.0);
        const QPoint corner((rect.width() - side) / 2, (rect.height() - side) / 2);
        painter->setOpacity(m_alpha);
        painter->drawImage(rect.topLeft() + corner - picture.origin, picture.image);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    /// Those that are sent to a host which cannot ask.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}};
    }

private:
    bool m_isLight;
    double m_alpha;
};

} // namespace

QIcon statusPicture(bool isForDarkBar, double alpha)
{
    return QIcon(new MouseIcon(isForDarkBar, alpha));
}

bool hasAlwaysDarkBar()
{
    static constexpr std::array desktops{"GNOME", "Unity", "X-Cinnamon", "Pantheon", "Budgie"};
    const auto names = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    return std::ranges::any_of(
        desktops, [&names](const char *desktop) { return names.contains(QLatin1String(desktop)); });
}

} // namespace kelmoth
