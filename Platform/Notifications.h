#pragma once

#include <string>

namespace kelmoth {

/// A desktop notification.
struct Notification {
    std::string title;
    std::string body;        ///< plain text
    bool isCritical = false; ///< stays until dismissed, where the desktop supports that

    bool operator==(const Notification &) const = default;
};

/// The desktop's notification service. No effect without one. Main thread; no call blocks.
class NotificationService {
public:
    virtual ~NotificationService() = default;

    /// Shows a notification; replaces the one that is shown.
    virtual void show(const Notification &notification) = 0;

    /// Closes it; no effect when none is shown.
    virtual void withdraw() = 0;
};

} // namespace kelmoth
