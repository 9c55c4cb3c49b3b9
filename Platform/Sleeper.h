#pragma once

#include <chrono>

namespace kelmoth {

/// Waits between transfers. Injected, so that tests record the pauses without waiting.
class Sleeper {
public:
    virtual ~Sleeper() = default;

    /// Blocks the calling thread for this time; never called on the main thread.
    virtual void sleep(std::chrono::microseconds duration) = 0;
};

} // namespace kelmoth
