#include "App/Arguments.h"
#include "App/Composition.h"
#include "App/PanelStage.h"
#include "App/Screenshots.h"
#include "Core/HID/DeviceManager.h"
#include "Core/HID/HIDMonitor.h"
#include "Core/Services/Appearance.h"
#include "Core/Services/LoginItem.h"
#include "Core/Services/Preferences.h"
#include "Core/Services/ToastManager.h"
#include "Platform/Linux/StandardStreams.h"
#include "Platform/Linux/TerminationSignals.h"
#include "UI/Views/ContentModel.h"
#include "UI/Views/PanelTranslator.h"
#include "UI/Views/PanelWindow.h"

#include <QGuiApplication>

#include <csignal>
#include <cstdio>

namespace kelmoth {

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

int rejectUsage(const std::string &message)
{
    std::fprintf(stderr, "kelmoth: %s\nTry \"kelmoth --help\".\n", message.c_str());
    return wrongUsage;
}

int print(const std::string &text)
{
    const bool isWritten = std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
    return isWritten ? 0 : failed;
}

/// The program between its platform's beginning and end.
int runPanel()
{
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, qApp, &QCoreApplication::quit);
    PanelTranslator translator(Preferences::shared());
    QCoreApplication::installTranslator(&translator);
    HIDMonitor::shared().startMonitoring();
    ContentModel model(DeviceManager::shared(), ToastManager::shared(), Preferences::shared(),
                       Appearance::shared(), LoginItem::shared());
    PanelWindow window(model, translator);
    if (window.status() != QQuickView::Ready) {
        log("❌ The panel cannot be shown");
        return failed;
    }
    window.show();
    const int status = QCoreApplication::exec();
    HIDMonitor::shared().stopMonitoring();
    return status;
}

/// Draws pictures of the panel, with nothing of this machine in them.
int runScreenshots(int argc, char **argv, const Arguments &arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    const QGuiApplication application(argc, argv);
    Platform::setCurrent(stillPlatform());
    const auto failure = drawScreenshots(*arguments.screenshots, arguments.scenes);
    Platform::setCurrent({});
    if (failure) {
        std::fprintf(stderr, "kelmoth: %s\n", failure->c_str());
    }
    return failure ? failed : 0;
}

int run(int argc, char **argv)
{
    const auto parsed = parseArguments(argc, argv);
    if (const auto *error = std::get_if<UsageError>(&parsed)) {
        return rejectUsage(error->message);
    }
    if (const auto *information = std::get_if<Information>(&parsed)) {
        return print(information->text);
    }
    PanelWindow::chooseRenderer();
    if (std::get<Arguments>(parsed).screenshots) {
        return runScreenshots(argc, argv, std::get<Arguments>(parsed));
    }
    const char *firstArgument = argc > 0 ? argv[0] : "";
    int status = failed;
    {
        const QGuiApplication application(argc, argv);
        QGuiApplication::setDesktopFileName(QStringLiteral("com.kelmoth.app"));
        std::string failure;
        const auto platform = composePlatform(std::get<Arguments>(parsed), firstArgument, &failure);
        if (!platform) {
            return rejectUsage(failure);
        }
        Platform::setCurrent(*platform);
        status = runPanel();
        platform->userDefaults->flush();
    }
    // What is left of it would outlive the libraries that it is made of.
    Platform::setCurrent({});
    return status;
}

} // namespace

} // namespace kelmoth

int main(int argc, char **argv)
{
    kelmoth::reserveStandardStreams();
    // Nobody may be left to read what is written to a terminal that has gone.
    std::signal(SIGPIPE, SIG_IGN);
    return kelmoth::run(argc, argv);
}
