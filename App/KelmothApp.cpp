#include "App/KelmothApp.h"

#include "App/PanelPopover.h"
#include "App/PanelStage.h"
#include "App/Sandbox.h"
#include "App/Screenshots.h"
#include "App/ToolkitLooks.h"
#include "Core/Services/ToastManager.h"
#include "Platform/Linux/RunningProcess.h"
#include "Platform/Linux/TerminationSignals.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/RegularFile.h"

#include <QApplication>
#include <QSessionManager>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>

namespace kelmoth {

namespace {

using namespace std::chrono_literals;

constexpr int failed = 1;
constexpr int wrongUsage = 2;

int rejectUsage(const std::string &message)
{
    std::fprintf(stderr, "kelmoth: %s\nTry \"kelmoth --help\".\n", message.c_str());
    return wrongUsage;
}

int fail(const std::string &message)
{
    std::fprintf(stderr, "kelmoth: %s\n", message.c_str());
    return failed;
}

int print(const std::string &text)
{
    const bool isWritten = std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
    return isWritten ? 0 : failed;
}

/// Prefers X under Wayland: Wayland windows cannot be positioned.
void preferX()
{
    const bool isChosen = qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (!isChosen && qEnvironmentVariableIsSet("WAYLAND_DISPLAY") && qEnvironmentVariableIsSet("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "xcb;wayland");
    }
}

/// Without a display the toolkit would abort the process.
bool namesDisplay()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

/// Draws screenshots of the panel, independent of this machine.
int runScreenshots(int argc, char **argv, const Arguments &arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    const QGuiApplication application(argc, argv);
    Platform::setCurrent(stillPlatform());
    const auto failure = drawScreenshots(*arguments.screenshots, arguments.scenes);
    Platform::setCurrent({});
    return failure ? fail(*failure) : 0;
}

/// Whether any copy runs, including one that is not on this session's bus.
bool isInstanceLockHeld(const UserSession &session, std::string_view identifier)
{
    const auto path = session.applicationSupportDirectory() + '/' + AppDelegate::lockFileName(identifier);
    const auto lock = openRegularFile(path, O_RDONLY);
    return lock && ::flock(lock.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

/// Ends the running copy; succeeds also without one.
int quitRunningInstance(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const auto session = joinSession();
    const auto identifier = resourceMainBundle()->identifier();
    const auto running = session->runningApplications(identifier);
    for (const auto &copy : running) {
        switch (copy.isTerminated ? EndOfProcess::ended : endProcess(copy.processIdentifier, 10s)) {
        case EndOfProcess::ended:
            break;
        case EndOfProcess::refused:
            return fail("the running copy cannot be ended");
        case EndOfProcess::stillRunning:
            return fail("the running copy does not end");
        }
    }
    if (running.empty() && isInstanceLockHeld(*session, identifier)) {
        return fail("a copy runs that the session bus does not know of");
    }
    return 0;
}

int runApplication(int argc, char **argv, const Arguments &arguments)
{
    if (!namesDisplay()) {
        return fail("there is no display; kelmothctl needs none");
    }
    preferX();
    const auto identifier = resourceMainBundle()->identifier();
    const auto programPath = startedProgramPath(argc > 0 ? argv[0] : "");
    Sandbox sandbox(identifier, AppDelegate::lockFileName(identifier), programPath);
    int status = failed;
    {
        const QApplication application(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
        QGuiApplication::setApplicationDisplayName(QStringLiteral("Kelmoth")); // for assistive tools
        QGuiApplication::setDesktopFileName(QStringLiteral("com.kelmoth.app"));
        std::string failure;
        const auto loginItem = std::make_shared<AutostartLoginItem>(
            programPath, [&sandbox](AutostartRequest request, AutostartLoginItem::Answer answer) {
                sandbox.askForAutostart(request, std::move(answer));
            });
        const auto composition = compose(arguments, loginItem, &failure);
        if (!composition) {
            return rejectUsage(failure);
        }
        Platform::setCurrent(composition->platform);
        if (sandbox.failure()) {
            log("⚠️ Not confined to its own files: %s", sandbox.failure()->c_str());
        }
        status = KelmothApp(*composition).run(arguments.show);
    }
    // Otherwise it would be destroyed after the libraries that it uses.
    Platform::setCurrent({});
    return status;
}

} // namespace

int KelmothApp::main(int argc, char **argv)
{
    const auto parsed = parseArguments(argc, argv);
    if (const auto *error = std::get_if<UsageError>(&parsed)) {
        return rejectUsage(error->message);
    }
    if (const auto *information = std::get_if<Information>(&parsed)) {
        return print(information->text);
    }
    const auto &arguments = std::get<Arguments>(parsed);
    if (arguments.quit) {
        return quitRunningInstance(argc, argv);
    }
    PanelWindow::chooseRenderer();
    return arguments.screenshots ? runScreenshots(argc, argv, arguments)
                                 : runApplication(argc, argv, arguments);
}

KelmothApp::KelmothApp(const Composition &composition)
    : m_composition(composition),
      m_translator(Preferences::shared()),
      m_appDelegate(parts()),
      m_batteryNotifier(HIDMonitor::shared(), DeviceManager::shared(), Preferences::shared(),
                        m_composition.platform.notifications)
{
}

AppDelegate::Parts KelmothApp::parts()
{
    return {
        .platform = m_composition.platform,
        .hidMonitor = HIDMonitor::shared(),
        .deviceManager = DeviceManager::shared(),
        .preferences = Preferences::shared(),
        .appearance = Appearance::shared(),
        .loginItem = LoginItem::shared(),
        .makePopover = [this] { return makePopover(); },
        .applyAppearance = [] { applyToToolkit(Appearance::shared().mode()); },
        .terminate = [] { QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection); }};
}

std::unique_ptr<Popover> KelmothApp::makePopover()
{
    m_model.emplace(DeviceManager::shared(), ToastManager::shared(), Preferences::shared(),
                    Appearance::shared(), LoginItem::shared());
    QObject::connect(&m_appDelegate, &AppDelegate::kelmothShowAbout, &*m_model, &ContentModel::openAbout);
    return std::make_unique<PanelPopover>(*m_model, m_translator, m_composition.screen);
}

KelmothApp *KelmothApp::running = nullptr;

int KelmothApp::run(bool opensPanel)
{
    running = this;
    std::atexit(finishWithoutDisplay);
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, qApp, &QCoreApplication::quit);
    m_composition.platform.session->setEndHandler([] {
        log("Kelmoth: the session has ended");
        QCoreApplication::quit();
    });
    // A restored session would start a second copy beside the one launched at login.
    QObject::connect(
        qApp, &QGuiApplication::saveStateRequest, qApp,
        [](QSessionManager &manager) { manager.setRestartHint(QSessionManager::RestartNever); },
        Qt::DirectConnection);
    QCoreApplication::installTranslator(&m_translator);
    QObject::connect(&Appearance::shared(), &Appearance::changed, &m_appDelegate,
                     [] { applyToToolkit(Appearance::shared().mode()); });
    m_appDelegate.applicationDidFinishLaunching();
    if (opensPanel) {
        m_appDelegate.openApp();
    }
    const int status = QCoreApplication::exec();
    finish();
    return status;
}

void KelmothApp::finish()
{
    m_appDelegate.applicationWillTerminate();
    m_composition.platform.session->setEndHandler(nullptr);
    m_composition.platform.userDefaults->flush();
    running = nullptr;
}

/// When the display is lost, the toolkit calls exit() from anywhere.
void KelmothApp::finishWithoutDisplay()
{
    if (running != nullptr) {
        log("Kelmoth: the display has gone");
        running->finish();
        std::_Exit(EXIT_SUCCESS); // other destructors would use the toolkit
    }
}

} // namespace kelmoth
