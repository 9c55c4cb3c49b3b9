#pragma once

#include "Platform/Bundle.h"
#include "Platform/UserDefaults.h"

#include <QString>

#include <memory>

namespace kelmoth {

struct Platform;

/// Where the program's settings are: `com.kelmoth.app` in the user's configuration directory.
QString settingsDirectory();

/// The user's preferences, in `defaults.ini` of that directory.
std::shared_ptr<UserDefaults> settingsUserDefaults();

/// The program's identity and the resources that are built into it, its language folders among them.
std::shared_ptr<const Bundle> resourceMainBundle();

/// Puts both into a platform.
void fillQtPlatform(Platform &platform);

} // namespace kelmoth
