#include "App/Screenshots.h"

#include "App/PanelStage.h"
#include "Core/Services/Appearance.h"
#include "Core/Services/Preferences.h"
#include "Platform/RegularFile.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace kelmoth {

namespace {

/// A mouse with all features.
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

/// The opened row scrolls into view.
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

/// Whether two pictures differ at most by rounding, which varies after an opacity animation.
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

/// None without a picture.
QImage pictureIn(const QString &path)
{
    constexpr std::size_t largestFile = std::size_t{64} * 1024 * 1024;
    const auto bytes = readRegularFile(path.toStdString(), largestFile);
    return bytes ? QImage::fromData(QByteArray::fromStdString(*bytes)) : QImage();
}

bool save(const QImage &picture, const QString &path)
{
    QBuffer png;
    return png.open(QIODevice::WriteOnly) && picture.save(&png, "PNG") &&
           !replaceRegularFile(path.toStdString(), png.data().toStdString(), {.waitsForDisk = false});
}

bool draw(const Scene &scene, const QString &path, PanelTranslator &translator)
{
    PanelStage stage(scene.mouse, translator);
    stage.show();
    scene.arrange(stage);
    const auto picture = stage.settle();
    const bool isSaved = !picture.isNull() && (looksTheSame(picture, pictureIn(path)) || save(picture, path));
    std::fprintf(isSaved ? stdout : stderr, "%s%s\n", isSaved ? "" : "not drawn: ", qPrintable(path));
    return isSaved;
}

std::string sceneNames()
{
    std::string names;
    for (const auto &scene : scenes) {
        names.append(names.empty() ? "" : ", ").append(scene.name);
    }
    return names;
}

bool isScene(const std::string &name)
{
    return std::ranges::any_of(scenes, [&name](const Scene &scene) { return scene.name == name; });
}

bool drawEachWay(const Scene &scene, const QDir &directory, PanelTranslator &translator)
{
    bool isGood = true;
    for (const auto &[language, languageMode] : {std::pair("en", 2), std::pair("pl", 1)}) {
        for (const auto &[scheme, appearanceMode] : {std::pair("light", 1), std::pair("dark", 2)}) {
            Preferences::shared().chooseLanguage(languageMode);
            Preferences::shared().setAppearanceMode(appearanceMode);
            const auto file =
                QStringLiteral("%1-%2-%3.png")
                    .arg(QLatin1String(scene.name), QLatin1String(language), QLatin1String(scheme));
            isGood = draw(scene, directory.filePath(file), translator) && isGood;
        }
    }
    return isGood;
}

} // namespace

std::optional<std::string> drawScreenshots(const std::string &directory,
                                           const std::vector<std::string> &wanted)
{
    const auto stranger = std::ranges::find_if_not(wanted, isScene);
    if (stranger != wanted.end()) {
        return "there is no scene \"" + *stranger + "\"; there are " + sceneNames();
    }
    const QDir target(QString::fromStdString(directory));
    if (!target.mkpath(QStringLiteral("."))) {
        return "\"" + directory + "\" cannot be made";
    }
    PanelTranslator translator(Preferences::shared());
    QCoreApplication::installTranslator(&translator);
    bool isGood = true;
    for (const auto &scene : scenes) {
        if (wanted.empty() || std::ranges::find(wanted, scene.name) != wanted.end()) {
            isGood = drawEachWay(scene, target, translator) && isGood;
        }
    }
    return isGood ? std::nullopt : std::optional<std::string>("not every picture could be drawn");
}

} // namespace kelmoth
