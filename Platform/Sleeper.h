#pragma once

#include <chrono>

namespace kelmoth {

/// How transfers wait. Injected, so that tests see the pauses and take none.
class Sleeper {
public:
    virtual ~Sleeper() = default;

    /// Blocks the calling thread for this long; never called on the main thread.
    virtual void sleep(std::chrono::microseconds duration) = 0;
};

} // namespace kelmoth
