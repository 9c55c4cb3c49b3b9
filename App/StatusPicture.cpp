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

QImage mousePicture(int side, const QColor &color, const SymbolLook::Shadow &shadow)
{
    SymbolLook look;
    look.size = QSizeF(side, side);
    look.side = side * 0.86; // room for the rim
    look.name = QStringLiteral("computermouse.fill");
    look.fill = {{0.0, color}};
    look.shadows[0] = shadow;
    const auto picture = paintSymbol(look, 1.0);
    return picture.image.copy(QRect(picture.origin, QSize(side, side)));
}

/// For a bar of known colour: a soft rim.
QImage softRimmed(int side, bool isLight)
{
    return mousePicture(side, isLight ? light : dark,
                        {.color = isLight ? dark : light, .radius = std::max(1.0, side / 16.0)});
}

/// For a bar of unknown colour: a full rim, so that either the mouse or the rim is visible.
QImage fullRimmed(int side)
{
    const auto rim = mousePicture(side, dark, {});
    auto picture = QImage(rim.size(), rim.format());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    const int width = std::max(1, qRound(side / 20.0));
    for (int y = -width; y <= width; ++y) {
        for (int x = -width; x <= width; ++x) {
            if (x * x + y * y <= width * width + 1) { // a disc, also where it is one pixel wide
                painter.drawImage(x, y, rim);
            }
        }
    }
    painter.drawImage(0, 0, mousePicture(side, light, {}));
    return picture;
}

/// Paints each size when a host asks for it.
class MouseIcon : public QIconEngine {
public:
    MouseIcon(ColorScheme bar, double alpha) : m_bar(bar), m_alpha(alpha) {}

    QIconEngine *clone() const override { return new MouseIcon(*this); }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        const int side = std::min(rect.width(), rect.height());
        const QPoint corner((rect.width() - side) / 2, (rect.height() - side) / 2);
        painter->setOpacity(m_alpha);
        painter->drawImage(rect.topLeft() + corner, m_bar == ColorScheme::noPreference
                                                        ? fullRimmed(side)
                                                        : softRimmed(side, m_bar == ColorScheme::dark));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    /// The sizes to send to a host that cannot request one.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}};
    }

private:
    ColorScheme m_bar;
    double m_alpha;
};

} // namespace

QIcon statusPicture(ColorScheme bar, double alpha)
{
    return QIcon(new MouseIcon(bar, alpha));
}

bool hasAlwaysDarkBar()
{
    static constexpr std::array desktops{"GNOME", "Unity", "X-Cinnamon", "Pantheon", "Budgie"};
    const auto names = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    return std::ranges::any_of(
        desktops, [&names](const char *desktop) { return names.contains(QLatin1String(desktop)); });
}

} // namespace kelmoth
