#include "App/AppDelegate.h"

#include "Core/Services/Application.h"
#include "Core/Services/L10n.h"
#include "Platform/RegularFile.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace kelmoth {

namespace {

using namespace std::chrono_literals;

/// How long to wait for a status item host, for example while the desktop starts.
constexpr auto hostTimeout = 2s;

constexpr auto feedbackTime = 150ms;
constexpr double dimmed = 0.5;

std::string title(std::string_view key)
{
    return L10n::resourceBundle()->localizedString(key, key);
}

} // namespace

std::string AppDelegate::lockFileName(std::string_view bundleIdentifier)
{
    return std::string(bundleIdentifier) + ".lock";
}

AppDelegate::AppDelegate(Parts parts) : m_parts(std::move(parts))
{
    m_feedbackTimer.setSingleShot(true);
    m_feedbackTimer.setInterval(feedbackTime);
    connect(&m_feedbackTimer, &QTimer::timeout, this, [this] { m_statusItem->setAlphaValue(1.0); });
    m_hostTimer.setSingleShot(true);
    m_hostTimer.setInterval(hostTimeout);
    connect(&m_hostTimer, &QTimer::timeout, this, [this] {
        if (!m_statusItem->isHosted().value_or(false) && !m_popover->isShown()) {
            showPopover(Popover::Place::asWindow); // make the program visible without a status item
        }
    });
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    const auto identifier = m_parts.platform.mainBundle->identifier();
    if (!claimSingleInstance()) {
        m_parts.platform.session->post(kelmothReopenRunningInstance, identifier);
        log("Kelmoth: another instance is running or instance lock is unavailable");
        m_parts.terminate();
        return;
    }
    m_isLaunched = true;
    m_parts.platform.session->observe(kelmothReopenRunningInstance, identifier,
                                      [this] { reopenRunningInstance(); });
    m_parts.applyAppearance();
    m_parts.loginItem.repairIfNeeded();
    m_parts.hidMonitor.startMonitoring();
    setupContextMenu();
    connect(&m_parts.preferences, &Preferences::kelmothLanguageDidChange, this,
            &AppDelegate::languageDidChange);
    setupMenuBar();
    setupEventMonitor();
    log("Kelmoth v%s started as Menu Bar App", application::version().c_str());
}

void AppDelegate::applicationWillTerminate()
{
    if (m_isLaunched) {
        m_parts.platform.session->removeObserver();
        disconnect(&m_parts.preferences, &Preferences::kelmothLanguageDidChange, this, nullptr);
        m_parts.hidMonitor.stopMonitoring();
        m_parts.hidMonitor.endTransfers(); // a new copy may start from here on
        m_parts.platform.eventMonitor->removeMonitor();
    }
    if (m_instanceLockFD) {
        ::flock(m_instanceLockFD.get(), LOCK_UN);
        m_instanceLockFD = FileDescriptor();
    }
}

bool AppDelegate::claimSingleInstance()
{
    const auto identifier = m_parts.platform.mainBundle->identifier();
    if (identifier.empty()) {
        return true;
    }
    const auto running = m_parts.platform.session->runningApplications(identifier);
    for (const auto &application : running) {
        if (application.processIdentifier != ::getpid() && !application.isTerminated) {
            return false;
        }
    }
    const auto directory = m_parts.platform.session->applicationSupportDirectory();
    return directory.empty() || lockInstance(directory + '/' + lockFileName(identifier));
}

/// False when another process holds the lock. True also when the lock cannot be created.
bool AppDelegate::lockInstance(const std::string &path)
{
    auto file = openRegularFile(path, O_RDWR | O_CREAT);
    if (file && ::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        return errno != EWOULDBLOCK; // else the file system has no locks
    }
    m_instanceLockFD = std::move(file);
    return true;
}

void AppDelegate::reopenRunningInstance()
{
    log("Kelmoth: reopen request received");
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!m_popover->isShown()) {
                openApp();
            }
            m_popover->makeKeyAndOrderFront();
        },
        Qt::QueuedConnection);
}

void AppDelegate::setupContextMenu()
{
    m_contextMenu = {
        {.title = title("Open Kelmoth"), .action = [this] { openApp(); }, .keyEquivalent = {}},    {},
        {.title = title("About Kelmoth"), .action = [this] { showAbout(); }, .keyEquivalent = {}}, {},
        {.title = title("Quit"), .action = [this] { quitApp(); }, .keyEquivalent = "q"},
    };
    if (m_statusItem) {
        m_statusItem->setMenu(m_contextMenu);
    }
}

void AppDelegate::languageDidChange()
{
    setupContextMenu();
    updateToolTip();
}

void AppDelegate::setupMenuBar()
{
    m_statusItem = m_parts.platform.statusBar->statusItem();
    m_statusItem->setClickHandler([this] { handleClick(); });
    m_statusItem->setHostHandler([this] { hostDidChange(); });
    m_statusItem->setMenu(m_contextMenu);
    // Redraw for the new scheme of the bar.
    connect(&m_parts.appearance, &Appearance::changed, this,
            [this] { m_statusItem->setAlphaValue(m_feedbackTimer.isActive() ? dimmed : 1.0); });
    connect(&m_parts.deviceManager, &DeviceManager::connectedDeviceChanged, this,
            &AppDelegate::updateToolTip);
    updateToolTip();
    m_popover = m_parts.makePopover();
    connect(m_popover.get(), &Popover::willShow, this, &AppDelegate::popoverWillShow);
    connect(m_popover.get(), &Popover::didClose, this, &AppDelegate::popoverDidClose);
    m_hostTimer.start();
}

void AppDelegate::setupEventMonitor()
{
    m_parts.platform.eventMonitor->addGlobalMonitor([this] {
        if (m_popover->isShown()) {
            m_wasClosedByPress = true;
            m_popover->performClose();
        }
    });
}

/// A press on the item may have closed the popover before the click arrives: then do not reopen it.
void AppDelegate::handleClick()
{
    const bool hasClosed =
        std::exchange(m_wasClosedByPress, false) && m_parts.platform.eventMonitor->isLastPressUnderWay();
    if (m_popover->isShown()) {
        m_popover->performClose();
    } else if (!hasClosed) {
        showPopover(Popover::Place::atPointer);
    }
}

void AppDelegate::openApp()
{
    const auto isHosted = m_popover ? m_statusItem->isHosted() : std::nullopt;
    if (isHosted) {
        showPopover(*isHosted ? Popover::Place::atItem : Popover::Place::asWindow);
        return;
    }
    m_opensOnceHostIsKnown = true;
    if (m_popover) {
        m_hostTimer.start();
    }
}

void AppDelegate::hostDidChange()
{
    if (m_statusItem->isHosted().value_or(false)) {
        m_hostTimer.stop(); // a host that leaves soon after is being replaced, not missing
    }
    if (m_opensOnceHostIsKnown) {
        openApp();
    } else if (const auto frame = m_statusItem->frame()) {
        m_popover->follow(*frame);
    }
}

void AppDelegate::showPopover(Popover::Place place)
{
    m_opensOnceHostIsKnown = false;
    m_popover->setAnimates(!m_parts.appearance.reduceMotion());
    dimStatusItem();
    m_popover->show(place, m_statusItem->frame());
    m_popover->makeKeyAndOrderFront();
    m_parts.platform.eventMonitor->setNeeded(!m_popover->isWindow());
}

/// Gives feedback on a click.
void AppDelegate::dimStatusItem()
{
    if (m_parts.appearance.reduceMotion()) {
        m_statusItem->setAlphaValue(1.0);
        return;
    }
    m_statusItem->setAlphaValue(dimmed);
    m_feedbackTimer.start();
}

void AppDelegate::showAbout()
{
    if (!m_popover->isShown()) {
        openApp();
    }
    QMetaObject::invokeMethod(this, &AppDelegate::kelmothShowAbout, Qt::QueuedConnection);
}

void AppDelegate::quitApp()
{
    m_parts.terminate();
}

void AppDelegate::popoverWillShow()
{
    if (const auto device = m_parts.deviceManager.connectedDevice()) {
        m_parts.hidMonitor.readBatteryLevel(*device);
    }
    m_parts.deviceManager.refreshFromDevice(false);
}

void AppDelegate::popoverDidClose()
{
    m_parts.platform.eventMonitor->setNeeded(false);
}

/// Shows the mouse's name, and its charge if known.
void AppDelegate::updateToolTip()
{
    const auto &device = m_parts.deviceManager.connectedDevice();
    if (!device) {
        m_statusItem->setToolTip("Kelmoth");
        return;
    }
    auto text = device->name();
    if (device->batteryLevel) {
        text += " · " + std::to_string(*device->batteryLevel) + " %";
    }
    m_statusItem->setToolTip(text);
}

} // namespace kelmoth
