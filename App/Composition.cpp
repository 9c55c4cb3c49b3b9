#include "App/Composition.h"

#include "App/TerseLog.h"
#include "Platform/Linux/AutostartLoginItem.h"
#include "Platform/Linux/LinuxPlatform.h"
#include "Platform/Linux/PortalDesktopSettings.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/Simulated/SimulatedPlatform.h"

namespace kelmoth {

std::optional<Platform> composePlatform(const Arguments &arguments, const char *firstArgument,
                                        std::string *failure)
{
    auto platform = linuxPlatform();
    fillQtPlatform(platform);
    if (!arguments.verbose) {
        platform.log = std::make_shared<TerseLog>(platform.log);
    }
    platform.desktopSettings = std::make_shared<PortalDesktopSettings>(sessionBusAddress());
    platform.loginItemService = std::make_shared<AutostartLoginItem>(startedProgramPath(firstArgument));
    if (arguments.simulate && !simulateMice(*arguments.simulate, platform, failure)) {
        return std::nullopt;
    }
    return platform;
}

} // namespace kelmoth
