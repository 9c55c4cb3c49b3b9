#pragma once

#include <chrono>
#include <cstdint>

namespace kelmoth {

/// Whether a process of this number is not there any more, or waits only for its parent to notice its end.
/// Any thread.
bool hasEnded(std::int64_t process);

/// What became of the wish that a process end.
enum class EndOfProcess { ended, refused, stillRunning };

/// Asks a process of this user to end, as a session does, and waits for it; `refused` when it is not there or
/// belongs to somebody else. Any thread; blocks.
EndOfProcess endProcess(std::int64_t process, std::chrono::milliseconds patience);

} // namespace kelmoth
