#pragma once

#include <QString>
#include <QTemporaryDir>

/// Before the application object is made: the home of a test program, no language of the user's, and no font
/// but those of the family that KELMOTH_FONT names, DejaVu Sans without it.
inline void moveInto(const QTemporaryDir &home)
{
    for (const char *name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        qputenv(name, home.path().toUtf8());
    }
    qputenv("LC_ALL", "C.UTF-8");
    qunsetenv("LANGUAGE");
    const auto fonts = QStringLiteral(KELMOTH_FONTS "/") +
                       qEnvironmentVariable("KELMOTH_FONT", QStringLiteral("DejaVu Sans"));
    qputenv("FONTCONFIG_PATH", fonts.toUtf8()); // the confined program may read all of it
    qputenv("FONTCONFIG_FILE", (fonts + QStringLiteral("/fonts.conf")).toUtf8());
}
