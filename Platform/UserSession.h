#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmoth {

/// A process that runs, or ran a moment ago, under a bundle identifier.
struct RunningApplication {
    std::int64_t processIdentifier = 0;
    bool isTerminated = false;
};

/// What the programs of one user's session know of each other, and the notifications that pass between them.
/// Without a session to speak to nobody is found, and notifications reach nobody. Main thread.
class UserSession {
public:
    virtual ~UserSession() = default;

    /// Every process known under the identifier, this one included. Asks the session; two seconds at most.
    virtual std::vector<RunningApplication> runningApplications(std::string_view bundleIdentifier) const = 0;

    /// Calls the handler for each notification of this name that another process posts about `object`, also
    /// for those that came since this session was joined. One handler; it replaces the last one. Makes this
    /// process known under `object` for as long as the handler stands.
    virtual void observe(std::string_view name, std::string_view object, std::function<void()> handler) = 0;

    /// Ends that.
    virtual void removeObserver() = 0;

    /// Posts a notification about `object`; it is on its way when this returns.
    virtual void post(std::string_view name, std::string_view object) = 0;

    /// Called when the session ends before the program does. One handler; an empty one ends the calls.
    virtual void setEndHandler(std::function<void()> handler) = 0;

    /// The directory in which programs of this user keep their data, made when needed; empty when there is
    /// none and none can be made.
    virtual std::string applicationSupportDirectory() const = 0;
};

} // namespace kelmoth
