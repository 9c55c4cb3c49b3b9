#pragma once

#include "Platform/FileDescriptor.h"

#include <chrono>
#include <functional>
#include <memory>

namespace kelmoth {

/// A process beside this one that does some few things when it is asked to. Started before this process
/// confines itself, it can do what this one cannot any more, and nothing else: a request is one byte, which
/// says no more than what. It ends when this process does, however that comes about, and sleeps until it is
/// asked.
class OutsideHelper {
public:
    /// How long an answer may take. What is asked for is a matter of some milliseconds: a disk that needs
    /// longer than this does not come back.
    static constexpr std::chrono::seconds longestWait{10};

    /// Forks: this process must have no other thread yet. `action` runs in the helper and gives 0 or an
    /// errno.
    explicit OutsideHelper(const std::function<int(char request)> &action,
                           std::chrono::milliseconds patience = longestWait);
    OutsideHelper(const OutsideHelper &) = delete;
    OutsideHelper &operator=(const OutsideHelper &) = delete;
    /// Whoever waits for an answer gets none. The helper ends by itself, after what it is doing.
    ~OutsideHelper();

    /// Returns at once. `answer`, which may be null, is called from the event loop with what the action gave:
    /// the answers come in the order of the requests. EPIPE when there is no helper, ETIMEDOUT when it has
    /// not answered in time, which ends it. Main thread.
    void ask(char request, std::function<void(int failure)> answer);

private:
    class Exchange;

    std::chrono::milliseconds m_patience;
    FileDescriptor m_socket;              ///< a byte for each request, an int for each answer
    std::unique_ptr<Exchange> m_exchange; ///< from the first request on: it needs the event loop
};

} // namespace kelmoth
