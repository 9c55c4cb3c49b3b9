#pragma once

#include <QColor>

namespace kelmoth {

/// What decides over the colours.
struct Scheme {
    bool dark = false;
    bool opaque = false; ///< no translucent materials
    QColor accent;       ///< of the desktop; invalid: the house's own blue
    bool operator==(const Scheme &) const = default;
};

/// The semantic colours of one scheme. Labels reach a contrast of 4.5 on every ground of the palette,
/// `accent` on the window, on the controls and on a tint of itself; white text reaches it on the accent
/// fills.
struct Palette {
    QColor label, secondaryLabel, tertiaryLabel;
    QColor windowBackground;    ///< the panel
    QColor controlBackground;   ///< cards and buttons on it
    QColor underPageBackground; ///< wells, and what is switched off
    QColor accent;              ///< symbols, text, tints, glows
    QColor accentPlain;         ///< a filled surface under white text
    QColor accentFill;          ///< the same where a gradient begins, which white text crosses
    QColor accentFillEnd;       ///< the lighter end of that gradient
    QColor separator, outline;  ///< hairlines between rows, and around controls
    QColor regularMaterial;     ///< cards and toasts: hides what is behind it
    QColor ultraThinMaterial;   ///< a tint of what is behind it: bars and badges
    QColor hover, press;        ///< laid over a control under the pointer
    QColor knob;                ///< of sliders and switches
    QColor red, orange, yellow, green, blue, purple, cyan, white, gray;

    static Palette of(const Scheme &scheme);
};

} // namespace kelmoth
