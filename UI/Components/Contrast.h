#pragma once

#include <QColor>

namespace kelmoth {

/// What text of any size needs on its ground (WCAG 2, level AA: 4.5), and a little that rounding takes, or
/// what shines through.
inline constexpr double readableContrast = 4.6;

/// What a symbol needs on a tint of its own colour (3).
inline constexpr double symbolContrast = 3.7;

/// The contrast of two opaque colours: 1 (none) to 21 (black on white).
double contrastRatio(const QColor &one, const QColor &other);

/// The opaque colour that is seen where `top` lies on the opaque `ground`.
QColor composited(const QColor &top, const QColor &ground);

/// `color` itself where its contrast on the opaque `ground` reaches `ratio`; else a darker (on a light
/// ground) or lighter one of the same hue that does. Keeps no alpha.
QColor readable(const QColor &color, const QColor &ground, double ratio = readableContrast);

} // namespace kelmoth
