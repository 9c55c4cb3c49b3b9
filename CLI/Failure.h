#pragma once

#include "CLI/ExitStatus.h"

#include <string>

namespace kelmoth {

/// Why a command does not do its work, for the user and for the caller of the process.
struct Failure {
    ExitStatus status;
    std::string message;
};

} // namespace kelmoth
