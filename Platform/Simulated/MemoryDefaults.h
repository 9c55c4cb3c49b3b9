#pragma once

#include "Platform/UserDefaults.h"

#include <map>
#include <string>
#include <variant>

namespace kelmoth {

/// Preferences that last as long as the object. Main thread.
class MemoryDefaults : public UserDefaults {
public:
    std::map<std::string, std::variant<std::int64_t, std::string>, std::less<>> values;

    std::int64_t integerForKey(std::string_view key) const override
    {
        return find<std::int64_t>(key).value_or(0);
    }
    std::optional<std::string> dataForKey(std::string_view key) const override
    {
        return find<std::string>(key);
    }
    bool hasObjectForKey(std::string_view key) const override { return values.contains(key); }
    void setInteger(std::string_view key, std::int64_t value) override { values[std::string(key)] = value; }
    void setData(std::string_view key, std::string data) override { values[std::string(key)] = data; }
    void removeObject(std::string_view key) override { values.erase(std::string(key)); }
    std::optional<std::string> flush() override { return std::nullopt; }

private:
    template <class T> std::optional<T> find(std::string_view key) const
    {
        const auto found = values.find(key);
        return found != values.end() && std::holds_alternative<T>(found->second)
                   ? std::optional(std::get<T>(found->second))
                   : std::nullopt;
    }
};

} // namespace kelmoth
