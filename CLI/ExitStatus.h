#pragma once

namespace kelmoth {

/// What the process tells its caller.
enum class ExitStatus {
    done = 0,
    failed = 1,       ///< the mouse refused or did not answer, or the output could not be written
    usage = 2,        ///< the arguments make no sense; nothing was done
    noMouse = 3,      ///< no mouse that can be configured
    noPermission = 4, ///< there is one, but this user may not open it
    notSaved = 5,     ///< the mouse took it, but it could not be saved
};

} // namespace kelmoth
