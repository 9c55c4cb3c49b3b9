// The main() of every test program: an event loop, a home and fonts of its own, no language of the user's.

#include "Tests/Fonts.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <gmock/gmock.h>

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    for (const char *name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(name, home.path().toUtf8());
    }
    pinFonts();
    qputenv("LC_ALL", "C.UTF-8");
    qunsetenv("LANGUAGE");
    QCoreApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
