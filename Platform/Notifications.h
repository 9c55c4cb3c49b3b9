#pragma once

#include <string>

namespace kelmoth {

/// A message of the program that the desktop shows beside whatever the user does.
struct Notification {
    std::string title;
    std::string body;        ///< plain text
    bool isCritical = false; ///< stays until the user has seen it, where the desktop knows how

    bool operator==(const Notification &) const = default;
};

/// The desktop's notifications. Where it shows none, nothing happens. Main thread; no call waits.
class NotificationService {
public:
    virtual ~NotificationService() = default;

    /// Shows a notification in place of the one that is shown.
    virtual void show(const Notification &notification) = 0;

    /// Takes it away; nothing when none is shown.
    virtual void withdraw() = 0;
};

} // namespace kelmoth
