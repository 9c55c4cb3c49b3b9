#pragma once

#include "Core/Device/RGBSetting.h"

#include <QColor>

#include <optional>

namespace kelmoth {

// A hue, 0 to 1 around the circle from red, stands for a colour of 90 % saturation and value.

/// The colour as the screen shows it.
QColor colorOfHue(double hue);

/// The colour as the mouse is told, each channel rounded down.
RGBColor rgbOfHue(double hue);

/// The hue of any colour; none of a grey.
std::optional<double> hueOf(const RGBColor &color);

} // namespace kelmoth
