// How each text and symbol of the panel stands out from what lies behind it, by pixels: bench_contrast. One
// line for each that does not reach what it should, and one for the rest. Run it on a large scale, so that
// strokes have pixels of their full colour.
#include "App/PanelStage.h"
#include "Core/Services/Preferences.h"
#include "UI/Components/Contrast.h"

#include <QGuiApplication>
#include <QQuickItem>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace kelmoth {

namespace {

constexpr double large = 18;     // points from which a text is read more easily
constexpr double forSmall = 4.5; // texts
constexpr double forLarge = 3;   // symbols, too

int difference(QRgb one, QRgb other)
{
    return std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other)) +
           std::abs(qBlue(one) - qBlue(other));
}

/// Of the pixels that differ the most, the least contrast; 1 where nothing is to be seen.
double contrastIn(const QRect &area, const QImage &with, const QImage &without)
{
    int most = 0;
    double least = 1;
    for (const bool isMeasured : {false, true}) {
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                const int change = difference(with.pixel(x, y), without.pixel(x, y));
                if (!isMeasured) {
                    most = std::max(most, change);
                } else if (change > 0 && change * 1000 >= most * 995) {
                    const double contrast =
                        contrastRatio(QColor(with.pixel(x, y)), QColor(without.pixel(x, y)));
                    least = least == 1 ? contrast : std::min(least, contrast);
                }
            }
        }
    }
    return least;
}

/// What an item shows of its children, in the window. What a page scrolls out fades there, on purpose.
QRectF clipOf(const QQuickItem &item)
{
    constexpr double fade = 14; // points, as in ScrollArea.qml
    auto shown = item.boundingRect();
    if (item.inherits("QQuickFlickable")) {
        shown.adjust(0, item.property("atYBeginning").toBool() ? 0 : fade, 0,
                     item.property("atYEnd").toBool() ? 0 : -fade);
    }
    return item.mapRectToScene(shown);
}

struct Mark {
    QQuickItem *item;
    QRectF place; ///< of it that is to be seen, in the window
    bool isText;
};

std::vector<Mark> marksIn(QQuickItem *top)
{
    std::vector<Mark> marks;
    QList<QQuickItem *> items{top};
    for (int i = 0; i < items.size(); ++i) {
        auto *item = items.at(i);
        if (!item->isVisible() || item->opacity() == 0 || !item->isEnabled()) { // what is inert may be faint
            continue;
        }
        items += item->childItems();
        const bool isText = item->inherits("QQuickText");
        if (isText || item->inherits("kelmoth::Symbol")) {
            QRectF place = item->mapRectToScene(item->boundingRect());
            for (const auto *around = item->parentItem(); around; around = around->parentItem()) {
                place &= around->clip() ? clipOf(*around) : place;
            }
            marks.push_back({item, place, isText});
        }
    }
    return marks;
}

struct Tally {
    int marks = 0;
    int faint = 0;
    double least = std::numeric_limits<double>::max(); ///< of texts
};

void measure(PanelStage &stage, const char *where, Tally &tally)
{
    auto &window = stage.show();
    const auto with = stage.settle();
    const auto marks = marksIn(window.rootObject());
    std::vector<double> opacities;
    for (const auto &mark : marks) {
        opacities.push_back(mark.item->opacity());
        mark.item->setOpacity(0);
    }
    const auto without = stage.settle();
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const auto &[item, place, isText] = marks[i];
        item->setOpacity(opacities[i]);
        const double scale = window.effectiveDevicePixelRatio();
        const auto area = QRectF(place.topLeft() * scale, place.size() * scale).toAlignedRect() & with.rect();
        const double contrast = contrastIn(area, with, without);
        if (contrast == 1) {
            continue; // scrolled away or empty
        }
        const auto font = item->property("font").value<QFont>();
        const bool isSmall = isText && font.pixelSize() < large;
        ++tally.marks;
        tally.least = isSmall ? std::min(tally.least, contrast) : tally.least;
        if (contrast < (isSmall ? forSmall : forLarge)) {
            ++tally.faint;
            std::printf("%s: %.2f %s\n", where, contrast,
                        qPrintable(item->property(isText ? "text" : "name").toString()));
        }
    }
}

void visit(const std::string &mouse, const std::string &where, PanelTranslator &translator, Tally &tally)
{
    PanelStage stage(mouse, translator);
    auto &panel = stage.panel();
    const auto look = [&](const char *page) {
        stage.show();
        stage.settle();
        measure(stage, (where + page).c_str(), tally);
    };
    constexpr std::array pages{"DPI", "lighting", "buttons", "settings"};
    for (const int page :
         {ContentModel::dpi, ContentModel::rgb, ContentModel::buttons, ContentModel::settings}) {
        panel.selectTab(page);
        look(pages.at(static_cast<std::size_t>(page)));
    }
    if (mouse == "basilisk-v3-pro-wired") {
        auto &buttons = *panel.buttonsTab();
        constexpr int row = static_cast<int>(MouseButton::forward);
        panel.selectTab(ContentModel::buttons);
        stage.settle();
        buttons.toggleButton(row);
        look("actions");
        for (const int action : {10, 12}) {
            buttons.handleActionSelection(row, action);
            buttons.toggleModifier(0);
            look("input");
        }
        for (const auto type : {ToastType::error, ToastType::success}) {
            stage.toasts().show(type, "Left button always stays Left Click", 60);
            look("toast");
        }
        panel.openAbout();
        look("about");
    }
}

} // namespace

} // namespace kelmoth

int main(int argc, char **argv)
{
    using namespace kelmoth;

    PanelWindow::chooseRenderer();
    Tally tally;
    {
        const QGuiApplication application(argc, argv);
        Platform::setCurrent(stillPlatform());
        PanelTranslator translator(Preferences::shared());
        QCoreApplication::installTranslator(&translator);
        for (const int language : {1, 2}) {
            for (const int scheme : {1, 2}) {
                Preferences::shared().chooseLanguage(language);
                Preferences::shared().setAppearanceMode(scheme);
                for (const char *mouse :
                     {"basilisk-v3-pro-wired", "basilisk-v3-x-hyperspeed:bluetooth", ""}) {
                    visit(mouse,
                          std::string(language == 1 ? "Polish " : "English ") +
                              (scheme == 1 ? "light " : "dark "),
                          translator, tally);
                }
            }
        }
        QCoreApplication::removeTranslator(&translator);
    }
    Platform::setCurrent({});
    std::printf("%d texts and symbols, least contrast of a small text %.2f, %d too faint\n", tally.marks,
                tally.least, tally.faint);
    return tally.faint ? EXIT_FAILURE : EXIT_SUCCESS;
}
