#pragma once

#include "App/Popover.h"
#include "Core/HID/DeviceManager.h"
#include "Core/HID/HIDMonitor.h"
#include "Core/Services/Appearance.h"
#include "Core/Services/LoginItem.h"
#include "Core/Services/Preferences.h"
#include "Platform/FileDescriptor.h"
#include "Platform/Platform.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <string_view>

namespace kelmoth {

/// Notification that a second copy posts to the running one, about the bundle identifier.
inline constexpr std::string_view kelmothReopenRunningInstance = "com.kelmoth.app.reopenRunningInstance";

/// Starts and ends the program and owns its status item: a left click opens the panel, a right click a menu.
/// Only one copy runs per user; a second one makes the first show its panel, and exits. Main thread.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// The collaborators; all outlive the delegate.
    struct Parts {
        Platform platform;
        HIDMonitor &hidMonitor;
        DeviceManager &deviceManager;
        Preferences &preferences;
        Appearance &appearance;
        LoginItem &loginItem;
        std::function<std::unique_ptr<Popover>()> makePopover; ///< with the panel in it
        std::function<void()> applyAppearance;                 ///< applies `appearance` to the toolkit
        std::function<void()> terminate;                       ///< ends the application, soon
    };

    /// The name of the instance lock file in the data directory.
    static std::string lockFileName(std::string_view bundleIdentifier);

    explicit AppDelegate(Parts parts);
    ~AppDelegate() override;
    AppDelegate(const AppDelegate &) = delete;
    AppDelegate &operator=(const AppDelegate &) = delete;

    /// Starts the program, or ends it when another instance runs.
    void applicationDidFinishLaunching();

    /// Ends the program.
    void applicationWillTerminate();

    /// Whether this process may run as the only instance: no other process of the program is known to run or
    /// holds the lock. True when neither can be determined.
    bool claimSingleInstance();

    /// Opens the panel unless it is open, once it is known whether there is a status item to open it at.
    void openApp();

Q_SIGNALS:
    /// Asks the panel to show About.
    void kelmothShowAbout();

private:
    void reopenRunningInstance();
    void setupContextMenu();
    void languageDidChange();
    void setupMenuBar();
    void setupEventMonitor();
    void handleClick();
    void showPopover(Popover::Place place);
    void showAbout();
    void quitApp();
    void popoverWillShow();
    void popoverDidClose();
    void dimStatusItem();
    void hostDidChange();
    void updateToolTip();
    bool lockInstance(const std::string &path);

    const Parts m_parts;
    FileDescriptor m_instanceLockFD; ///< invalid without the lock
    bool m_isLaunched = false;
    bool m_opensOnceHostIsKnown = false;
    bool m_wasClosedByPress = false;
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<Popover> m_popover;
    std::vector<MenuEntry> m_contextMenu;
    QTimer m_feedbackTimer;
    QTimer m_hostTimer;
};

} // namespace kelmoth
