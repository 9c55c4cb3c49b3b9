#pragma once

#include "Platform/Bundle.h"
#include "Platform/UserDefaults.h"

#include <QString>

#include <chrono>
#include <memory>

namespace kelmoth {

struct Platform;

/// The program's settings directory: `com.kelmoth.app` in the user's configuration directory.
QString settingsDirectory();

/// The user's preferences, in `defaults.ini` of that directory. `longestWait` limits how long the program
/// waits for the disk when it exits.
std::shared_ptr<UserDefaults> settingsUserDefaults(std::chrono::milliseconds longestWait);

/// The program's identity and its built-in resources, including the language folders.
std::shared_ptr<const Bundle> resourceMainBundle();

/// Sets both in a platform.
void fillQtPlatform(Platform &platform);

} // namespace kelmoth
