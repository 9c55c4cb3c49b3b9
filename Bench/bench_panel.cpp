// What the panel costs: bench_panel construction | motion | memory | idle
#include "App/PanelStage.h"
#include "Core/Services/Preferences.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace kelmoth {

namespace {

constexpr auto mouse = "basilisk-v3-pro-wired";
constexpr int runs = 10;
constexpr int rest = 150; // milliseconds without a frame: nothing moves any more

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

void runEvents(int duration)
{
    QEventLoop loop;
    QTimer::singleShot(duration, &loop, &QEventLoop::quit);
    loop.exec();
}

void waitForFrame(PanelWindow &window)
{
    QEventLoop loop;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
    loop.exec();
}

/// The longest time from one frame to the next while something moves, in milliseconds.
double worstFrame(PanelWindow &window, const std::function<void()> &move)
{
    QEventLoop loop;
    QTimer still;
    still.setSingleShot(true);
    QElapsedTimer sinceFrame;
    double worst = 0;
    QObject::connect(&still, &QTimer::timeout, &loop, &QEventLoop::quit);
    const auto swapped = QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, [&] {
        worst = std::max(worst, milliseconds(sinceFrame));
        sinceFrame.start();
        still.start(rest);
    });
    sinceFrame.start();
    still.start(10 * rest);
    move();
    loop.exec();
    QObject::disconnect(swapped);
    return worst;
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return (values[(values.size() - 1) / 2] + values[values.size() / 2]) / 2;
}

long residentKilobytes()
{
    long pages = 0;
    if (std::FILE *file = std::fopen("/proc/self/statm", "re")) {
        if (std::fscanf(file, "%*d %ld", &pages) != 1) {
            pages = 0;
        }
        std::fclose(file);
    }
    return pages * ::sysconf(_SC_PAGESIZE) / 1024;
}

void construct(PanelStage &stage)
{
    QElapsedTimer timer;
    timer.start();
    auto &window = stage.show();
    const double built = milliseconds(timer);
    waitForFrame(window);
    std::printf("construction %.1f\nfirst-frame %.1f\n", built, milliseconds(timer));
}

void move(PanelStage &stage)
{
    auto &window = stage.show();
    worstFrame(window, [] {}); // the entrance
    std::vector<double> tabs;
    std::vector<double> sheets;
    for (int run = 0; run < runs; ++run) {
        double worst = 0;
        for (const auto tab :
             {ContentModel::rgb, ContentModel::buttons, ContentModel::settings, ContentModel::dpi}) {
            worst = std::max(worst, worstFrame(window, [&] { stage.panel().selectTab(tab); }));
        }
        tabs.push_back(worst);
        sheets.push_back(worstFrame(window, [&] { stage.panel().openAbout(); }));
        worstFrame(window, [&] { stage.panel().closeAbout(); });
    }
    std::printf("first-tab-switch %.1f\n", tabs.front());
    std::printf("tab-switch %.1f\nabout %.1f\n", median(tabs), median(sheets));
}

void openAndClose(PanelWindow &window, int times)
{
    for (int i = 0; i < times; ++i) {
        window.show();
        waitForFrame(window);
        window.hide();
        runEvents(0);
    }
}

void switchLooks(PanelWindow &window, int times)
{
    window.show();
    waitForFrame(window);
    for (int i = 0; i < times; ++i) {
        Preferences::shared().chooseLanguage(1 + i % 2);
        Preferences::shared().setAppearanceMode(1 + i / 2 % 2);
        waitForFrame(window);
    }
    window.hide();
    runEvents(0);
}

void measureMemory(PanelStage &stage)
{
    auto &window = stage.show();
    waitForFrame(window);
    openAndClose(window, 20);
    switchLooks(window, 20);
    const long first = residentKilobytes();
    openAndClose(window, 480);
    const long opened = residentKilobytes();
    switchLooks(window, 180);
    std::printf("resident %ld %ld %ld\n", first, opened, residentKilobytes());
}

/// Shown once, then hidden: says so on standard output and waits to be ended.
void beIdle(PanelStage &stage)
{
    auto &window = stage.show();
    worstFrame(window, [] {});
    window.hide();
    runEvents(1000);
    std::puts("hidden");
    std::fflush(stdout);
    QCoreApplication::exec();
}

int run(std::string_view what)
{
    PanelTranslator translator(Preferences::shared());
    QCoreApplication::installTranslator(&translator);
    PanelStage stage(what == "idle" ? "basilisk-v3" : mouse, translator);
    if (what == "construction") {
        construct(stage);
    } else if (what == "motion") {
        move(stage);
    } else if (what == "memory") {
        measureMemory(stage);
    } else if (what == "idle") {
        beIdle(stage);
    } else {
        std::fputs("Usage: bench_panel construction | motion | memory | idle\n", stderr);
        return 2;
    }
    return 0;
}

} // namespace

} // namespace kelmoth

int main(int argc, char **argv)
{
    using namespace kelmoth;

    PanelWindow::chooseRenderer();
    int status = 0;
    {
        const QGuiApplication application(argc, argv);
        auto platform = stillPlatform();
        platform.desktopSettings = nullptr; // everything moves
        Platform::setCurrent(platform);
        status = run(argc > 1 ? argv[1] : "");
    }
    Platform::setCurrent({});
    return status;
}
