#pragma once

#include <cstdint>
#include <string_view>

namespace kelmoth {

/// The user's stored preferences. Main thread.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// The whole number stored under `key`; 0 when there is none or something else is stored.
    virtual std::int64_t integerForKey(std::string_view key) const = 0;
};

} // namespace kelmoth
