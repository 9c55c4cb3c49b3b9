#include "App/Composition.h"

#include "App/StatusPicture.h"
#include "App/TerseLog.h"
#include "Platform/Linux/DBusNotifications.h"
#include "Platform/Linux/DBusSession.h"
#include "Platform/Linux/LinuxPlatform.h"
#include "Platform/Linux/PortalDesktopSettings.h"
#include "Platform/Qt/PressMonitor.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/Qt/TrayStatusBar.h"
#include "Platform/Qt/XConnection.h"
#include "Platform/Simulated/SimulatedPlatform.h"

#include <utility>

namespace kelmoth {

namespace {

StatusPicture pictureFor(std::shared_ptr<const DesktopSettings> desktop)
{
    return [desktop = std::move(desktop)](double alpha) {
        return statusPicture(hasAlwaysDarkBar() ? ColorScheme::dark : desktop->colorScheme(), alpha);
    };
}

/// The toolkit's own connection, so that the program has a single one; invalid without a bus.
QDBusConnection sessionBus()
{
    const auto address = sessionBusAddress();
    if (address.isEmpty()) {
        return QDBusConnection(QString());
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8()); // for the toolkit
    return QDBusConnection::sessionBus();
}

std::shared_ptr<UserSession> sessionOn(const QDBusConnection &bus)
{
    return std::make_shared<DBusSession>(bus, QString::fromStdString(resourceMainBundle()->identifier()));
}

} // namespace

std::shared_ptr<UserSession> joinSession()
{
    return sessionOn(sessionBus());
}

std::optional<Composition> compose(const Arguments &arguments, std::shared_ptr<LoginItemService> loginItem,
                                   std::string *failure)
{
    auto platform = linuxPlatform();
    fillQtPlatform(platform);
    if (!arguments.verbose) {
        platform.log = std::make_shared<TerseLog>(platform.log);
    }
    if (arguments.simulate && !simulateMice(*arguments.simulate, platform, failure)) {
        return std::nullopt;
    }
    const auto bus = sessionBus();
    platform.session = sessionOn(bus);
    platform.notifications = std::make_shared<DBusNotifications>(bus);
    const auto desktop = std::make_shared<PortalDesktopSettings>(bus);
    platform.desktopSettings = desktop;
    platform.loginItemService = std::move(loginItem);
    const std::shared_ptr<XConnection> connection = XConnection::connectToServer();
    platform.statusBar = std::make_shared<TrayStatusBar>(connection, pictureFor(desktop));
    platform.eventMonitor = std::make_shared<PressMonitor>(connection);
    return Composition{.platform = std::move(platform),
                       .screen = std::make_shared<PopoverScreen>(connection)};
}

} // namespace kelmoth
