#pragma once

#include "Platform/Bundle.h"
#include "Platform/UserDefaults.h"

#include <QString>

#include <chrono>
#include <memory>

namespace kelmoth {

struct Platform;

/// Where the program's settings are: `com.kelmoth.app` in the user's configuration directory.
QString settingsDirectory();

/// The user's preferences, in `defaults.ini` of that directory. At its end the program waits so long for the
/// disk.
std::shared_ptr<UserDefaults> settingsUserDefaults(std::chrono::milliseconds longestWait);

/// The program's identity and the resources that are built into it, its language folders among them.
std::shared_ptr<const Bundle> resourceMainBundle();

/// Puts both into a platform.
void fillQtPlatform(Platform &platform);

} // namespace kelmoth
