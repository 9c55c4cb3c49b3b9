#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelmoth {

/// The user's stored preferences: values under keys, for good. Main thread; what is set can be read back at
/// once, and reaches the disk soon after, off the main thread.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// The whole number stored under `key`; 0 when there is none or something else is stored.
    virtual std::int64_t integerForKey(std::string_view key) const = 0;

    /// The text stored under `key`, UTF-8; none when there is none or something else is stored.
    virtual std::optional<std::string> dataForKey(std::string_view key) const = 0;

    /// Whether anything at all is stored under `key`.
    virtual bool hasObjectForKey(std::string_view key) const = 0;

    /// Stores a value in place of any other. That it could not be kept is logged, and said by `flush()`.
    virtual void setInteger(std::string_view key, std::int64_t value) = 0;
    virtual void setData(std::string_view key, std::string data) = 0;

    /// Takes the value under `key` away; nothing when there is none.
    virtual void removeObject(std::string_view key) = 0;

    /// Waits until what was set has reached the disk, some seconds at most: for a program that is about to
    /// end. None once all of it has, else why not, in English.
    virtual std::optional<std::string> flush() = 0;
};

} // namespace kelmoth
