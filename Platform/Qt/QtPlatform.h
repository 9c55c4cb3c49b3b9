#pragma once

#include "Platform/Bundle.h"
#include "Platform/UserDefaults.h"

#include <memory>

namespace kelmoth {

struct Platform;

/// The user's preferences, in `com.kelmoth.app/defaults.ini` of the user's configuration directory.
std::shared_ptr<UserDefaults> settingsUserDefaults();

/// The program's identity and the resources that are built into it, its language folders among them.
std::shared_ptr<const Bundle> resourceMainBundle();

/// Puts both into a platform.
void fillQtPlatform(Platform &platform);

} // namespace kelmoth
