#pragma once

#include <chrono>
#include <cstdint>

namespace kelmoth {

/// Whether no process has this ID, or it is a zombie. Any thread.
bool hasEnded(std::int64_t process);

/// Result of a request to end a process.
enum class EndOfProcess { ended, refused, stillRunning };

/// Sends SIGTERM to a process of this user and waits for its end; `refused` when it does not exist or belongs
/// to another user. Any thread; blocks.
EndOfProcess endProcess(std::int64_t process, std::chrono::milliseconds timeout);

} // namespace kelmoth
