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

/// The system's list of programs that start at login, as far as it is about this program. Main thread; no
/// call waits.
class LoginItemService {
public:
    virtual ~LoginItemService() = default;

    virtual LoginItemStatus status() const = 0;

    /// Told when a request is done: none on success, else what went wrong, for the user. Called on the main
    /// thread, before the request returns or later; not at all once the program ends.
    using Done = std::function<void(std::optional<std::string> failure)>;

    /// Has the program started at login from now on.
    virtual void registerItem(Done done) = 0;

    /// Ends that.
    virtual void unregisterItem(Done done) = 0;

    /// Shows the user the place where programs are allowed to start at login.
    virtual void openLoginItemsSettings() = 0;

    /// Whether the program, links resolved, lies where the system keeps its applications.
    virtual bool isInApplicationsFolder() const = 0;

    /// Where the program lies, links not resolved.
    virtual std::string bundlePath() const = 0;
};

} // namespace kelmoth
