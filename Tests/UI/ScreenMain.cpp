// The main() of the test programs that need a screen: offscreen ones of several scales, the renderer that
// users get, a platform that remembers nothing, no home and fonts but their own.

#include "Platform/Platform.h"
#include "Platform/Simulated/MemoryDefaults.h"
#include "Tests/Home.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <fstream>

namespace {

/// Screens side by side, named by their scales in percent; the first has the plain one.
std::string screens()
{
    auto all = nlohmann::json::array();
    for (const int dpi : {96, 98, 100, 102, 106, 110, 120, 128, 144, 168, 192}) {
        auto screen = R"({"y": 0, "width": 1000, "height": 1600, "logicalBaseDpi": 96, "dpr": 1})"_json;
        screen["name"] = std::to_string(dpi * 100 / 96);
        screen["x"] = 1000 * all.size();
        screen["logicalDpi"] = dpi;
        all.push_back(screen);
    }
    return nlohmann::json{{"screens", all}, {"synchronousWindowSystemEvents", false}}.dump();
}

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    moveInto(home);
    const auto layout = home.filePath(QStringLiteral("screens.json")).toStdString();
    std::ofstream(layout) << screens();
    qputenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + layout).c_str());
    qunsetenv("QT_QPA_PLATFORMTHEME");
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    QGuiApplication application(argc, argv);
    kelmoth::Platform platform;
    platform.userDefaults = std::make_shared<kelmoth::MemoryDefaults>();
    kelmoth::Platform::setCurrent(platform);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
