#include "UI/Views/Hue.h"

#include <algorithm>
#include <cmath>

namespace kelmoth {

namespace {

constexpr double saturation = 0.9;
constexpr double value = 0.9;

} // namespace

QColor colorOfHue(double hue)
{
    return QColor::fromHsvF(static_cast<float>(hue), static_cast<float>(saturation),
                            static_cast<float>(value));
}

RGBColor rgbOfHue(double hue)
{
    const double c = value * saturation;
    const double h6 = hue * 6;
    const int sector = static_cast<int>(h6);
    const double x = c * (1 - std::abs(std::fmod(h6, 2) - 1));
    const double m = value - c;
    const auto color = [m](double r, double g, double b) {
        const auto channel = [m](double part) { return static_cast<std::uint8_t>((part + m) * 255); };
        return RGBColor{channel(r), channel(g), channel(b)};
    };
    switch (sector) {
    case 0:
        return color(c, x, 0);
    case 1:
        return color(x, c, 0);
    case 2:
        return color(0, c, x);
    case 3:
        return color(0, x, c);
    case 4:
        return color(x, 0, c);
    default:
        return color(c, 0, x);
    }
}

std::optional<double> hueOf(const RGBColor &color)
{
    const double r = color.r / 255.0;
    const double g = color.g / 255.0;
    const double b = color.b / 255.0;
    const double max = std::max({r, g, b});
    const double d = max - std::min({r, g, b});
    if (d <= 0) {
        return std::nullopt;
    }
    double h = 0.0;
    if (max == r) {
        h = std::fmod((g - b) / d, 6);
    } else if (max == g) {
        h = (b - r) / d + 2;
    } else {
        h = (r - g) / d + 4;
    }
    h /= 6;
    return h < 0 ? h + 1 : h;
}

} // namespace kelmoth
