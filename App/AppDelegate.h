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

/// Posted by a copy that must not start, about the bundle identifier, to the one that runs.
inline constexpr std::string_view kelmothReopenRunningInstance = "com.kelmoth.app.reopenRunningInstance";

/// The program's start and end and its presence on screen: a status item, whose left button opens the panel
/// and whose right button opens a menu. One copy runs for a user; a second one has the first show its panel,
/// and ends. Main thread.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// What the program is made of; all of it outlives the delegate.
    struct Parts {
        Platform platform;
        HIDMonitor &hidMonitor;
        DeviceManager &deviceManager;
        Preferences &preferences;
        Appearance &appearance;
        LoginItem &loginItem;
        std::function<std::unique_ptr<Popover>()> makePopover; ///< with the panel in it
        std::function<void()> applyAppearance; ///< gives the toolkit the looks that `appearance` asks for
        std::function<void()> terminate;       ///< ends the application, soon
    };

    /// The name under the data directory of the file whose lock the one instance holds.
    static std::string lockFileName(std::string_view bundleIdentifier);

    explicit AppDelegate(Parts parts);
    ~AppDelegate() override;
    AppDelegate(const AppDelegate &) = delete;
    AppDelegate &operator=(const AppDelegate &) = delete;

    /// The start of the program. Has it end when another instance runs.
    void applicationDidFinishLaunching();

    /// The end of the program.
    void applicationWillTerminate();

    /// Whether this process may run as the one instance: no other process of the program is known to run or
    /// holds the lock. Where neither can be found out it may.
    bool claimSingleInstance();

    /// Opens the panel; where it is open already it stays. As soon as it is known whether there is a status
    /// item to open it at.
    void openApp();

Q_SIGNALS:
    /// The panel is to present About.
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
    FileDescriptor m_instanceLockFD; ///< none while no lock is held
    bool m_isLaunched = false;
    bool m_opensOnceHostIsKnown = false;
    bool m_wasClosedByPress = false;
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<Popover> m_popover;
    std::vector<MenuEntry> m_contextMenu;
    QTimer m_untilStatusItemIsBright;
    QTimer m_untilHostIsMissed;
};

} // namespace kelmoth
