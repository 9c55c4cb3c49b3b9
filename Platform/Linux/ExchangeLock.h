#pragma once

#include "Platform/Sleeper.h"

namespace kelmoth {

/// Takes the device node behind `fd` (open for writing) for one exchange, from every other process that
/// asks this way; waits about two seconds for it. 0 on success, EBUSY when someone else keeps it for longer,
/// else errno. Any thread, one at a time for each open node.
///
/// The node belongs to the process whose `flock` on it stands. flock alone would be unfair: a process that
/// gives the node back and asks again at once nearly always wins against one that sleeps between two tries,
/// and would starve it for a whole read of the mouse. So there is a gate in front of it, a lock on the
/// node's first byte, which is held while waiting for the node and no longer: who waits holds the gate, and
/// who has just finished finds it shut and queues behind. Both are locks of the open file, so they end with
/// it, whatever becomes of the process.
int takeExchange(int fd, Sleeper &sleeper);

/// Gives back what a successful `takeExchange` took.
void releaseExchange(int fd);

} // namespace kelmoth
