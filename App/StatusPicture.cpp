#include "App/StatusPicture.h"

#include "UI/Components/SymbolLook.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <array>

namespace kelmoth {

namespace {

/// The sizes that hosts ask for, in device pixels.
constexpr std::array sides{16, 22, 24, 32, 44, 48, 64};

const QColor light(0xF5, 0xF5, 0xF7);
const QColor dark(0x2E, 0x2E, 0x33);

QPixmap pictureOf(int side, bool isLight, double alpha)
{
    SymbolLook look;
    look.size = QSizeF(side, side);
    look.side = side * 0.86; // the rim needs room, too
    look.name = QStringLiteral("computermouse.fill");
    look.fill = {{0.0, isLight ? light : dark}};
    look.shadows[0] = {.color = isLight ? dark : light, .radius = std::max(1.0, side / 16.0)};
    const auto picture = paintSymbol(look, 1.0);
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setOpacity(alpha);
    painter.drawImage(-picture.origin, picture.image);
    return pixmap;
}

} // namespace

QIcon statusPicture(bool isForDarkBar, double alpha)
{
    QIcon icon;
    for (const int side : sides) {
        icon.addPixmap(pictureOf(side, isForDarkBar, alpha));
    }
    return icon;
}

bool hasAlwaysDarkBar()
{
    static constexpr std::array desktops{"GNOME", "Unity", "X-Cinnamon", "Pantheon", "Budgie"};
    const auto names = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    return std::ranges::any_of(
        desktops, [&names](const char *desktop) { return names.contains(QLatin1String(desktop)); });
}

} // namespace kelmoth
