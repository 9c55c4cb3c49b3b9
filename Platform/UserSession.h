#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmoth {

/// A process that runs, or has just ended, under a bundle identifier.
struct RunningApplication {
    std::int64_t processIdentifier = 0;
    bool isTerminated = false;
};

/// Finds the programs of the user's session and passes notifications between them. Without a session no
/// process is found and notifications are lost. Main thread.
class UserSession {
public:
    virtual ~UserSession() = default;

    /// Every process known under the identifier, including this one. Queries the session; timeout two
    /// seconds.
    virtual std::vector<RunningApplication> runningApplications(std::string_view bundleIdentifier) const = 0;

    /// Calls the handler for each notification of this name that another process posts about `object`, also
    /// for the last one since this session was joined. It replaces the last handler. Registers this process
    /// under `object` until `removeObserver`.
    virtual void observe(std::string_view name, std::string_view object, std::function<void()> handler) = 0;

    /// Removes the handler.
    virtual void removeObserver() = 0;

    /// Posts a notification about `object`; it has been sent when this returns.
    virtual void post(std::string_view name, std::string_view object) = 0;

    /// Sets the handler for an end of the session before the program's. An empty one removes it.
    virtual void setEndHandler(std::function<void()> handler) = 0;

    /// The data directory of this user's programs, created if needed; empty on failure.
    virtual std::string applicationSupportDirectory() const = 0;
};

} // namespace kelmoth
