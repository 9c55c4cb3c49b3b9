#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmoth {

/// The program's identity and its resources: the main bundle, or one language folder of it. Main thread.
class Bundle {
public:
    virtual ~Bundle() = default;

    /// "com.kelmoth.app"
    virtual std::string identifier() const = 0;

    /// The program's version, "0.1.0".
    virtual std::string version() const = 0;

    /// The languages that the bundle offers, as the system's user prefers them, best first; codes such as
    /// "pl". May be empty.
    virtual std::vector<std::string> preferredLocalizations() const = 0;

    /// Where the resource `name`.`type` lies in this bundle; none when there is no such resource.
    virtual std::optional<std::string> pathForResource(std::string_view name,
                                                       std::string_view type) const = 0;

    /// The bundle at a path that `pathForResource` gave; none when it cannot be opened as one.
    virtual std::shared_ptr<const Bundle> bundleAtPath(const std::string &path) const = 0;

    /// The text stored under `key` in the default string table, `value` when there is none. The main bundle
    /// looks in the first of its preferred localizations.
    virtual std::string localizedString(std::string_view key, std::string_view value) const = 0;
};

} // namespace kelmoth
