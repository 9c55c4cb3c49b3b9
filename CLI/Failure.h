#pragma once

#include "CLI/ExitStatus.h"

#include <string>

namespace kelmoth {

/// Why a command does not do its work, for the user and for the caller of the process.
struct Failure {
    ExitStatus status;
    std::string message;
    bool isOfMouse = false; ///< what was sent to the mouse and what it answered say more
};

} // namespace kelmoth
