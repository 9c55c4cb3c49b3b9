#pragma once

#include "CLI/Arguments.h"
#include "Platform/Platform.h"

#include <memory>
#include <optional>
#include <string>

namespace kelmoth {

/// The system that a run of kelmothctl works on: this one, or simulated mice in its place. None when the
/// list of simulated mice is wrong; `failure` then says how. Main thread.
std::optional<Platform> composePlatform(const Options &options, std::shared_ptr<Log> log,
                                        std::string *failure);

} // namespace kelmoth
