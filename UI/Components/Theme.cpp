#include "UI/Components/Theme.h"

#include "Core/Services/Appearance.h"
#include "UI/Components/Contrast.h"

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>

#include <array>
#include <utility>

namespace kelmoth {
namespace {

/// The toolkit's palette; its stock highlight is nobody's choice.
QColor highlight()
{
    constexpr QRgb stock = 0xFF308CC6;
    const QColor color = QGuiApplication::palette().color(QPalette::Active, QPalette::Highlight);
    return color.rgb() == stock ? QColor() : color;
}

bool paletteIsDark()
{
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

} // namespace

Theme::Theme(QObject *parent) : QObject(parent), m_palette(Palette::of(m_scheme))
{
    qGuiApp->installEventFilter(this);
    Appearance::shared().setPaletteIsDark(paletteIsDark());
    connect(&Appearance::shared(), &Appearance::changed, this, &Theme::update);
    update();
}

bool Theme::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange) {
        Appearance::shared().setPaletteIsDark(paletteIsDark());
        update(); // the accent may be the palette's
    }
    return QObject::eventFilter(watched, event);
}

void Theme::update()
{
    const Appearance &appearance = Appearance::shared();
    const auto accent = appearance.accent();
    const Scheme scheme{.dark = appearance.isDark(),
                        .opaque = appearance.reduceTransparency(),
                        .accent = accent ? QColor::fromRgb(*accent) : highlight()};
    if (scheme == m_scheme && appearance.reduceMotion() == m_reduceMotion) {
        return;
    }
    m_scheme = scheme;
    m_reduceMotion = appearance.reduceMotion();
    m_palette = Palette::of(scheme);
    setChanging(true);
    Q_EMIT changed();
    setChanging(false);
}

void Theme::setChanging(bool isChanging)
{
    m_isChanging = isChanging;
    Q_EMIT changingChanged();
}

QString Theme::roundedFamily()
{
    for (const auto family : {QLatin1String("Quicksand"), QLatin1String("Nunito"), QLatin1String("Comfortaa"),
                              QLatin1String("Varela Round")}) {
        if (QFontDatabase::hasFamily(family)) {
            return family;
        }
    }
    return QGuiApplication::font().family();
}

QColor Theme::stage(const QString &name) const
{
    const std::array stages{
        std::pair(QLatin1String("red"), m_palette.red),
        std::pair(QLatin1String("orange"), m_palette.orange),
        std::pair(QLatin1String("yellow"), m_palette.yellow),
        std::pair(QLatin1String("green"), m_palette.green),
        std::pair(QLatin1String("blue"), m_palette.blue),
        std::pair(QLatin1String("purple"), m_palette.purple),
        std::pair(QLatin1String("cyan"), m_palette.cyan),
        std::pair(QLatin1String("white"), m_palette.white),
    };
    for (const auto &[stage, color] : stages) {
        if (stage == name) {
            return color;
        }
    }
    return m_palette.gray;
}

QColor Theme::alpha(const QColor &color, double opacity) const
{
    QColor result = color;
    result.setAlphaF(static_cast<float>(qBound(0.0, opacity, 1.0)));
    return result;
}

QColor Theme::readable(const QColor &color) const
{
    return kelmoth::readable(color, m_palette.windowBackground);
}

QColor Theme::readableSymbol(const QColor &color) const
{
    return kelmoth::readable(color, m_palette.windowBackground, symbolContrast);
}

} // namespace kelmoth
