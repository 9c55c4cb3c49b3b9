#pragma once

#include <optional>
#include <string>

namespace kelmoth {

/// Denies to this thread, and to the threads and processes that it starts from now on, permanently, what
/// Landlock does not cover and the program does not need (EPERM):
/// - changing the mode, owner, times, extended attributes or flags of a file, except `fchmod` to 0600, which
///   keeps settings private;
/// - signals to other processes, and limits of their resources;
/// - sockets of other families than AF_UNIX and AF_NETLINK, and of the latter all but the kernel's device
///   events, unless `usesNetwork`;
/// - typing into a terminal;
/// - io_uring, which would bypass the filter.
///
/// Also denies new privileges. None on success, else the reason in English.
std::optional<std::string> filterSystemCalls(bool usesNetwork);

} // namespace kelmoth
