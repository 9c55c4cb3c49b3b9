#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelmoth {

/// The user's stored preferences, by key. Main thread; a value that is set can be read at once, and is
/// written to the disk soon after on another thread.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// The whole number stored under `key`; 0 when there is none or something else is stored.
    virtual std::int64_t integerForKey(std::string_view key) const = 0;

    /// The text stored under `key`, UTF-8; none when there is none or something else is stored.
    virtual std::optional<std::string> dataForKey(std::string_view key) const = 0;

    /// Whether anything is stored under `key`.
    virtual bool hasObjectForKey(std::string_view key) const = 0;

    /// Stores or replaces a value. A failure to save it is logged, and reported by `flush()`.
    virtual void setInteger(std::string_view key, std::int64_t value) = 0;
    virtual void setData(std::string_view key, std::string data) = 0;

    /// Removes the value under `key`, if any.
    virtual void removeObject(std::string_view key) = 0;

    /// Waits until all values are on the disk, some seconds at most, before the program ends. None on
    /// success, else the reason in English.
    virtual std::optional<std::string> flush() = 0;
};

} // namespace kelmoth
