#include "CLI/Composition.h"

#include "Platform/Linux/LinuxPlatform.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/Simulated/SimulatedPlatform.h"

namespace kelmoth {

std::optional<Platform> composePlatform(const Options &options, std::shared_ptr<Log> log,
                                        std::string *failure)
{
    auto platform = linuxPlatform();
    // No bundle: what is printed is English in every session, for the programs that read it.
    platform.userDefaults = settingsUserDefaults(std::chrono::seconds{20}); // a busy disk is no failure
    platform.log = std::move(log);
    if (options.simulate && !simulateMice(*options.simulate, platform, failure)) {
        return std::nullopt;
    }
    return platform;
}

} // namespace kelmoth
