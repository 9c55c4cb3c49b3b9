// The main() of the test programs that need a screen: an offscreen one, the renderer that users get, a
// platform that remembers nothing, no home but their own.

#include "Platform/Platform.h"
#include "Platform/Simulated/MemoryDefaults.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <gmock/gmock.h>

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    for (const char *name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        qputenv(name, home.path().toUtf8());
    }
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("LANGUAGE");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    QGuiApplication application(argc, argv);
    kelmoth::Platform platform;
    platform.userDefaults = std::make_shared<kelmoth::MemoryDefaults>();
    kelmoth::Platform::setCurrent(platform);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
