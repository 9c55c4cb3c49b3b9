// The main() of the test programs that need a screen: offscreen ones of several scales, the renderer that
// users get, a platform that remembers nothing, no home and fonts but their own.

#include "Platform/Platform.h"
#include "Platform/Simulated/MemoryDefaults.h"
#include "Tests/Fonts.h"

#include <QFile>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

/// Screens side by side, named by their scales in percent; the first has the plain one.
std::string screens()
{
    auto all = nlohmann::json::array();
    for (const int dpi : {96, 98, 100, 102, 106, 110, 120, 128, 144, 168, 192}) {
        constexpr int width = 1000;
        all.push_back({{"name", std::to_string(dpi * 100 / 96)},
                       {"x", width * all.size()},
                       {"y", 0},
                       {"width", width},
                       {"height", 1600},
                       {"logicalBaseDpi", 96},
                       {"logicalDpi", dpi},
                       {"dpr", 1}});
    }
    return nlohmann::json{{"screens", all}, {"synchronousWindowSystemEvents", false}}.dump();
}

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    for (const char *name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        qputenv(name, home.path().toUtf8());
    }
    pinFonts();
    qputenv("LC_ALL", "C.UTF-8");
    QFile layout(home.filePath(QStringLiteral("screens.json")));
    if (!layout.open(QIODevice::WriteOnly) || layout.write(screens().c_str()) < 0) {
        return EXIT_FAILURE;
    }
    layout.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + layout.fileName().toUtf8());
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
