#pragma once

#include <QString>

/// Before the application object is made: no font counts but those of the family that KELMOTH_FONT names,
/// DejaVu Sans without it.
inline void pinFonts()
{
    const auto directory = QStringLiteral(KELMOTH_FONTS "/") +
                           qEnvironmentVariable("KELMOTH_FONT", QStringLiteral("DejaVu Sans"));
    qputenv("FONTCONFIG_PATH", directory.toUtf8()); // the confined program may read all of it
    qputenv("FONTCONFIG_FILE", (directory + QStringLiteral("/fonts.conf")).toUtf8());
}
