// Draws the panel in each of its states, languages and schemes, without a screen:
// kelmoth_screenshots DIRECTORY [SCENE]…
#include "Core/Services/Appearance.h"
#include "Core/Services/Preferences.h"
#include "Tests/Screenshots/PanelStage.h"

#include <QDir>
#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace kelmoth {

namespace {

/// A mouse that has everything there is to show.
constexpr auto mouse = "basilisk-v3-pro-wired";

struct Scene {
    const char *name;
    const char *mouse;
    void (*arrange)(PanelStage &stage);
};

int actionRow(PanelStage &stage, const QString &label)
{
    const auto *actions = stage.panel().buttonsTab()->actions();
    for (int row = 0; row < actions->count(); ++row) {
        if (actions->value(row, "label").toString() == label) {
            return row;
        }
    }
    return -1;
}

void expandForwardButton(PanelStage &stage)
{
    stage.panel().selectTab(ContentModel::buttons);
    stage.settle();
    stage.panel().buttonsTab()->toggleButton(static_cast<int>(MouseButton::forward));
}

/// What is picked scrolls into sight as it opens.
void pickForForwardButton(PanelStage &stage, const QString &action)
{
    expandForwardButton(stage);
    stage.settle();
    stage.panel().buttonsTab()->handleActionSelection(static_cast<int>(MouseButton::forward),
                                                      actionRow(stage, action));
}

constexpr std::array scenes{
    Scene{"dpi", mouse, [](PanelStage &) {}},
    Scene{"rgb", mouse, [](PanelStage &stage) { stage.panel().selectTab(ContentModel::rgb); }},
    Scene{"buttons", mouse, [](PanelStage &stage) { stage.panel().selectTab(ContentModel::buttons); }},
    Scene{"buttons-expanded", mouse, expandForwardButton},
    Scene{"buttons-key", mouse,
          [](PanelStage &stage) {
              pickForForwardButton(stage, QStringLiteral("Keyboard Key"));
              stage.panel().buttonsTab()->toggleModifier(0);
          }},
    Scene{"buttons-profile", mouse,
          [](PanelStage &stage) { pickForForwardButton(stage, QStringLiteral("Profile Switch")); }},
    Scene{"settings", mouse, [](PanelStage &stage) { stage.panel().selectTab(ContentModel::settings); }},
    Scene{"notice-none", "", [](PanelStage &) {}},
    Scene{"notice-bluetooth", "basilisk-v3-x-hyperspeed:bluetooth", [](PanelStage &) {}},
    Scene{"notice-unsupported", PanelStage::foreignMouse, [](PanelStage &) {}},
    Scene{"about", mouse, [](PanelStage &stage) { stage.panel().openAbout(); }},
    Scene{"toast", mouse,
          [](PanelStage &stage) {
              stage.toasts().show(ToastType::error, "Left button always stays Left Click", 60.0);
          }},
};

/// Whether two pictures differ by rounding at most, which may come out either way where opacities have moved.
bool looksTheSame(const QImage &one, const QImage &other)
{
    constexpr int rounding = 2; // of 255
    if (one.size() != other.size()) {
        return false;
    }
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const auto a = one.pixel(x, y);
            const auto b = other.pixel(x, y);
            if (std::abs(qRed(a) - qRed(b)) > rounding || std::abs(qGreen(a) - qGreen(b)) > rounding ||
                std::abs(qBlue(a) - qBlue(b)) > rounding) {
                return false;
            }
        }
    }
    return true;
}

bool draw(const Scene &scene, const QString &path, PanelTranslator &translator)
{
    PanelStage stage(scene.mouse, translator);
    scene.arrange(stage);
    const auto picture = stage.settle();
    const bool isSaved = !picture.isNull() && (looksTheSame(picture, QImage(path)) || picture.save(path));
    std::fprintf(isSaved ? stdout : stderr, "%s%s\n", isSaved ? "" : "not drawn: ", qPrintable(path));
    return isSaved;
}

bool drawAll(const QDir &directory, const QStringList &wanted)
{
    PanelTranslator translator(Preferences::shared());
    QCoreApplication::installTranslator(&translator);
    bool isGood = true;
    for (const auto &scene : scenes) {
        const auto name = QLatin1String(scene.name);
        if (!wanted.isEmpty() && !wanted.contains(name)) {
            continue;
        }
        for (const auto &[language, languageMode] : {std::pair("en", 2), std::pair("pl", 1)}) {
            for (const auto &[scheme, appearanceMode] : {std::pair("light", 1), std::pair("dark", 2)}) {
                Preferences::shared().chooseLanguage(languageMode);
                Preferences::shared().setAppearanceMode(appearanceMode);
                const auto file =
                    QStringLiteral("%1-%2-%3.png").arg(name, QLatin1String(language), QLatin1String(scheme));
                isGood = draw(scene, directory.filePath(file), translator) && isGood;
            }
        }
    }
    return isGood;
}

} // namespace

} // namespace kelmoth

int main(int argc, char **argv)
{
    using namespace kelmoth;

    for (const auto &[name, value] :
         {std::pair("QT_QPA_PLATFORM", "offscreen"), std::pair("LC_ALL", "C.UTF-8")}) {
        qputenv(name, value);
    }
    PanelWindow::chooseRenderer();
    int status = 0;
    {
        const QGuiApplication application(argc, argv);
        auto words = QGuiApplication::arguments().mid(1);
        if (words.isEmpty()) {
            std::fputs("Usage: kelmoth_screenshots DIRECTORY [SCENE]...\n", stderr);
            return 2;
        }
        const QDir directory(words.takeFirst());
        directory.mkpath(QStringLiteral("."));
        Platform::setCurrent(stillPlatform());
        status = drawAll(directory, words) ? 0 : 1;
    }
    Platform::setCurrent({});
    return status;
}
