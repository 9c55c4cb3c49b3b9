#pragma once

#include "Platform/FileDescriptor.h"

#include <chrono>
#include <functional>
#include <memory>

namespace kelmoth {

/// A helper process outside the sandbox. Started before this process confines itself, it carries out a few
/// fixed actions that this one no longer may. A request is one byte that names the action. The helper ends
/// when this process does, for whatever reason, and sleeps between requests.
class OutsideHelper {
public:
    /// Default timeout of a request. Actions take some milliseconds; a disk that needs longer than this is
    /// broken.
    static constexpr std::chrono::seconds defaultTimeout{10};

    /// Forks: this process must have no other thread yet. `action` runs in the helper and returns 0 or an
    /// errno.
    explicit OutsideHelper(const std::function<int(char request)> &action,
                           std::chrono::milliseconds timeout = defaultTimeout);
    OutsideHelper(const OutsideHelper &) = delete;
    OutsideHelper &operator=(const OutsideHelper &) = delete;
    /// Pending answers are dropped. The helper exits after its current action.
    ~OutsideHelper();

    /// Returns at once. `answer`, which may be null, is called from the event loop with the result of the
    /// action, in the order of the requests: EPIPE without a helper, ETIMEDOUT on timeout, after which the
    /// helper is not used any more. Main thread.
    void ask(char request, std::function<void(int failure)> answer);

private:
    class Exchange;

    std::chrono::milliseconds m_timeout;
    FileDescriptor m_socket;              ///< a byte for each request, an int for each answer
    std::unique_ptr<Exchange> m_exchange; ///< created by the first request: it needs the event loop
};

} // namespace kelmoth
