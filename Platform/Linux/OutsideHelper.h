#pragma once

#include "Platform/FileDescriptor.h"

#include <functional>
#include <sys/types.h>

namespace kelmoth {

/// A process beside this one that does one thing whenever it is asked to. Started before this process
/// confines itself, it can do what this one cannot any more, and nothing else: it is told nothing but when.
/// It ends when this process does, however that comes about, and sleeps until it is asked.
class OutsideHelper {
public:
    /// Forks: this process must have no other thread yet. `action` runs in the helper. Where no process can
    /// be started, asking does nothing.
    explicit OutsideHelper(const std::function<void()> &action);
    OutsideHelper(const OutsideHelper &) = delete;
    OutsideHelper &operator=(const OutsideHelper &) = delete;
    /// Waits for the helper's end, which follows at once unless it is just starting something.
    ~OutsideHelper();

    /// Returns at once; whether it is done is not known. Any thread.
    void ask() const;

private:
    FileDescriptor m_wishes; ///< a byte for each; the helper has the other end
    pid_t m_process = -1;    ///< -1: none
};

} // namespace kelmoth
