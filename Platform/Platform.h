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

/// All system services of the program. `main` builds and installs it before any other code of ours runs; the
/// services outlive their users.
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

    /// The installed platform; all services are null before that.
    static const Platform &current();

    /// Installs the platform of this process. Main thread, while it is the only thread.
    static void setCurrent(Platform platform);
};

} // namespace kelmoth
