#pragma once

#include "Platform/Bundle.h"
#include "Platform/DesktopSettings.h"
#include "Platform/EventMonitor.h"
#include "Platform/HID.h"
#include "Platform/Log.h"
#include "Platform/LoginItemService.h"
#include "Platform/Notifications.h"
#include "Platform/Sleeper.h"
#include "Platform/StatusItem.h"
#include "Platform/USB.h"
#include "Platform/UserDefaults.h"
#include "Platform/UserSession.h"

#include <memory>

namespace kelmoth {

/// Everything that the program asks of a system. The program's entry builds one and installs it before
/// anything else of ours runs; the pieces outlive every user of them.
struct Platform {
    std::shared_ptr<Log> log;
    std::shared_ptr<Sleeper> sleeper;
    std::shared_ptr<HIDService> hid;
    std::shared_ptr<USBService> usb;
    std::shared_ptr<UserDefaults> userDefaults;
    std::shared_ptr<const Bundle> mainBundle;
    std::shared_ptr<DesktopSettings> desktopSettings;   ///< absent where there is no desktop
    std::shared_ptr<LoginItemService> loginItemService; ///< absent where nothing is started at login
    std::shared_ptr<NotificationService> notifications; ///< absent where there is no desktop
    std::shared_ptr<UserSession> session;               ///< absent where programs have none; so the next two
    std::shared_ptr<StatusBar> statusBar;
    std::shared_ptr<EventMonitor> eventMonitor;

    /// The installed platform; all pieces absent before one is installed.
    static const Platform &current();

    /// Installs the platform of this process. Main thread, while no other thread of ours runs.
    static void setCurrent(Platform platform);
};

} // namespace kelmoth
