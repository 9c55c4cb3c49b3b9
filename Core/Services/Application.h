#pragma once

#include "Platform/Log.h"

#include <string>

// What rooms that know nothing of platforms need of the program around them: its log (`log`, from Log.h) and
// its version.

namespace kelmoth::application {

/// The program's version, "?" when it has none. Main thread.
std::string version();

} // namespace kelmoth::application
