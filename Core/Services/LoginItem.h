#pragma once

#include "Platform/LoginItemService.h"
#include "Platform/UserDefaults.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace kelmoth {

/// Launch at login was asked for while the program lies outside the system's applications.
struct NotInApplicationsError {
    static constexpr std::string_view key = "Move Kelmoth to the Applications folder to launch it at login.";

    /// In the interface language.
    std::string localizedDescription() const;
};

/// The system did not do what it was asked for.
struct LoginItemServiceError {
    std::string text; ///< what the system says

    std::string localizedDescription() const { return text; }
};

using LoginItemError = std::variant<NotInApplicationsError, LoginItemServiceError>;

/// What an error says to the user. Main thread.
std::string localizedDescription(const LoginItemError &error);

/// Starts the program when its user logs in, and remembers from where it was registered, so that a
/// registration of a copy that has moved is mended. Outlives its requests. Main thread.
class LoginItem {
public:
    static constexpr std::string_view registeredPathKey = "loginItemRegisteredPath";

    /// The application's one instance, on the installed platform; made on first use.
    static LoginItem &shared();

    /// Without a service the program is not registered and cannot be.
    LoginItem(std::shared_ptr<LoginItemService> service, std::shared_ptr<UserDefaults> defaults);

    LoginItemStatus status() const;
    bool isInApplicationsFolder() const;

    /// Shows the user the place where programs are allowed to start at login.
    void openLoginItemsSettings();

    /// Told when a switch is done; none on success. Called on the main thread, perhaps before the call that
    /// it was given to returns.
    using Done = std::function<void(const std::optional<LoginItemError> &error)>;

    /// Switches launch at login on or off.
    void setEnabled(bool enabled, const Done &done);

    /// Registers the program anew when it was registered from another place; for the start of the program.
    /// Logs what it did, and failures.
    void repairIfNeeded();

private:
    void enable(const Done &done);
    void disable(const Done &done);
    void registerAnew();

    std::shared_ptr<LoginItemService> m_service;
    std::shared_ptr<UserDefaults> m_defaults;
};

} // namespace kelmoth
