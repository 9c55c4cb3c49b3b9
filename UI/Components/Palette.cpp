#include "UI/Components/Palette.h"

#include "UI/Components/Contrast.h"

namespace kelmoth {
namespace {

QColor faded(const QColor &color, float alpha)
{
    QColor result = color;
    result.setAlphaF(alpha);
    return result;
}

Palette light()
{
    Palette palette;
    palette.label = QColor(0x1B1B1F);
    palette.secondaryLabel = QColor(0x55555E);
    palette.tertiaryLabel = QColor(0x65656E);
    palette.windowBackground = QColor(0xF3F3F6);
    palette.controlBackground = QColor(0xFFFFFF);
    palette.underPageBackground = QColor(0xE3E3E9);
    palette.separator = faded(Qt::black, 0.10F);
    palette.outline = faded(Qt::black, 0.10F);
    palette.regularMaterial = faded(Qt::white, 0.96F);
    palette.ultraThinMaterial = faded(QColor(0x3C3C50), 0.07F);
    palette.hover = faded(Qt::black, 0.04F);
    palette.press = faded(Qt::black, 0.09F);
    palette.knob = Qt::white;
    palette.red = QColor(0xE5352B);
    palette.orange = QColor(0xF08200);
    palette.yellow = QColor(0xF2B600);
    palette.green = QColor(0x28A745);
    palette.blue = QColor(0x0A6CF0);
    palette.purple = QColor(0x9A45D6);
    palette.cyan = QColor(0x1BA7D6);
    palette.gray = QColor(0x8A8A92);
    return palette;
}

Palette dark()
{
    Palette palette;
    palette.label = QColor(0xF2F2F5);
    palette.secondaryLabel = QColor(0xB9B9C2);
    palette.tertiaryLabel = QColor(0xA6A6B0);
    palette.windowBackground = QColor(0x1D1D20);
    palette.controlBackground = QColor(0x2B2B30);
    palette.underPageBackground = QColor(0x3A3A41);
    palette.separator = faded(Qt::white, 0.11F);
    palette.outline = faded(Qt::white, 0.09F);
    palette.regularMaterial = faded(QColor(0x2E2E33), 0.97F);
    palette.ultraThinMaterial = faded(QColor(0xC8C8E0), 0.07F);
    palette.hover = faded(Qt::white, 0.05F);
    palette.press = faded(Qt::white, 0.10F);
    palette.knob = QColor(0xF4F4F7);
    palette.red = QColor(0xFF5147);
    palette.orange = QColor(0xFF9F2E);
    palette.yellow = QColor(0xFFD426);
    palette.green = QColor(0x34D058);
    palette.blue = QColor(0x3D95FF);
    palette.purple = QColor(0xC077F5);
    palette.cyan = QColor(0x5CC8F2);
    palette.gray = QColor(0x98989F);
    return palette;
}

/// The accent, where text in it can be read on the panel, on a control, and on a badge: a tint of itself.
QColor readableAccent(const QColor &accent, const Palette &palette)
{
    constexpr float tint = 0.15F;
    QColor result = accent;
    constexpr int rounds = 8; // the tint changes with the accent, but by less each time
    for (int i = 0; i < rounds; ++i) {
        for (const QColor &ground : {palette.windowBackground, palette.controlBackground}) {
            result = readable(result, ground);
            result = readable(result, composited(faded(result, tint), ground));
        }
    }
    return result;
}

} // namespace

Palette Palette::of(const Scheme &scheme)
{
    Palette palette = scheme.dark ? dark() : light();
    palette.white = Qt::white;
    const QColor accent = scheme.accent.isValid() ? QColor(scheme.accent.rgb()) : palette.blue;
    palette.accent = readableAccent(accent, palette);
    palette.accentPlain = readable(accent, Qt::white, readableContrast);
    palette.accentFill = readable(accent, Qt::white, 5.6);
    palette.accentFillEnd =
        readable(composited(faded(accent, 0.7F), scheme.dark ? QColor(Qt::black) : palette.controlBackground),
                 Qt::white, readableContrast);
    if (scheme.opaque) {
        palette.regularMaterial = palette.controlBackground;
        palette.ultraThinMaterial = palette.controlBackground;
    }
    return palette;
}

} // namespace kelmoth
