#pragma once

#include "Platform/Sleeper.h"

namespace kelmoth {

/// Locks the device node behind `fd` (open for writing) for one exchange, against processes that use the same
/// lock; waits about two seconds. 0 on success, EBUSY on timeout, else errno. Any thread, one at a time for
/// each open node.
///
/// The lock is a `flock` on the node. flock alone would be unfair: a process that unlocks and locks again at
/// once nearly always wins against one that sleeps between two attempts, and would starve it for a whole read
/// of the mouse. Hence a second lock, the gate, on the node's first byte, held only while waiting for the
/// node: a waiting process holds the gate, and one that has just unlocked queues behind it. Both locks belong
/// to the open file, so they end with the process.
int takeExchange(int fd, Sleeper &sleeper);

/// Releases what a successful `takeExchange` locked.
void releaseExchange(int fd);

} // namespace kelmoth
