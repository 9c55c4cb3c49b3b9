#include "UI/Components/Contrast.h"

#include <algorithm>
#include <cmath>

namespace kelmoth {
namespace {

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

double contrastRatio(const QColor &one, const QColor &other)
{
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

QColor composited(const QColor &top, const QColor &ground)
{
    const float alpha = top.alphaF();
    const auto mix = [alpha](float over, float under) { return over * alpha + under * (1.0F - alpha); };
    return QColor::fromRgbF(mix(top.redF(), ground.redF()), mix(top.greenF(), ground.greenF()),
                            mix(top.blueF(), ground.blueF()));
}

QColor readable(const QColor &color, const QColor &ground, double ratio)
{
    constexpr int steps = 100;
    const bool darken = luminance(ground) > 0.18; // where black and white are equally far
    const QColor start = QColor(color.rgb()).toHsl();
    const float from = start.lightnessF();
    const float to = darken ? 0.0F : 1.0F;
    QColor result = start;
    for (int step = 0; step <= steps && contrastRatio(result.toRgb(), ground) < ratio; ++step) {
        const float lightness = from + (to - from) * static_cast<float>(step) / steps;
        result = QColor::fromHslF(std::max(start.hslHueF(), 0.0F), start.hslSaturationF(), lightness);
    }
    return {result.toRgb().rgb()};
}

} // namespace kelmoth
