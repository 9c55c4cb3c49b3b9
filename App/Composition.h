#pragma once

#include "App/Arguments.h"
#include "Platform/Platform.h"

#include <optional>
#include <string>

namespace kelmoth {

/// The system that the program runs on: this one, with simulated mice in place of the attached ones where the
/// arguments ask for them. `firstArgument` is the word that the program was started by. None when the list of
/// simulated mice is wrong; `failure` then says how. Main thread.
std::optional<Platform> composePlatform(const Arguments &arguments, const char *firstArgument,
                                        std::string *failure);

} // namespace kelmoth
