#pragma once

#include <functional>
#include <optional>
#include <string>

namespace kelmoth {

/// Whether the system starts the program when its user logs in.
enum class LoginItemStatus {
    notRegistered = 0,
    enabled = 1,
    requiresApproval = 2, ///< registered, but the user has to allow it in the system's settings
    notFound = 3,         ///< the system does not know the program
};

/// This program's entry among those that start at login. Main thread; no call blocks.
class LoginItemService {
public:
    virtual ~LoginItemService() = default;

    virtual LoginItemStatus status() const = 0;

    /// Result of a request: none on success, else a message for the user. Called on the main thread, before
    /// the request returns or later; not after the program's end.
    using Done = std::function<void(std::optional<std::string> failure)>;

    /// Starts the program at login from now on.
    virtual void registerItem(Done done) = 0;

    /// Stops starting the program at login.
    virtual void unregisterItem(Done done) = 0;

    /// Opens the system's settings for programs that start at login.
    virtual void openLoginItemsSettings() = 0;

    /// Whether the program, links resolved, is in the system's application directories.
    virtual bool isInApplicationsFolder() const = 0;

    /// The program's path, links not resolved.
    virtual std::string bundlePath() const = 0;
};

} // namespace kelmoth
