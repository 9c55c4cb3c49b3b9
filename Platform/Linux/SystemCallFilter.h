#pragma once

#include <optional>
#include <string>

namespace kelmoth {

/// Has the kernel refuse to this thread, and to the threads and processes that it starts from now on, until
/// their ends, what Landlock has no say in and the program does not need (EPERM):
/// - changing the mode, owner, times, extended attributes or flags of a file, but for `fchmod` to 0600 of one
///   that is open, which is how settings are kept private;
/// - signals to other processes, and limits of their resources;
/// - sockets of other families than AF_UNIX and AF_NETLINK, and of the latter all but the kernel's device
///   events, unless `usesNetwork`;
/// - typing into a terminal;
/// - io_uring, which would go round all this.
///
/// Also refuses new privileges. None on success, else an English text that says why nothing is refused.
std::optional<std::string> filterSystemCalls(bool usesNetwork);

} // namespace kelmoth
