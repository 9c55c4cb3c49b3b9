#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmoth {

/// The text of a preferences file in the INI dialect of QSettings, compatible in both directions. QSettings
/// itself takes only a path, whose file may be replaced before it is opened. Keys are letters, digits and
/// dots.
class SettingsText {
public:
    using Values = std::map<std::string, std::optional<std::string>, std::less<>>;

    /// Accepts any text; one that is not INI has no values.
    explicit SettingsText(std::string_view text);

    /// The values by key, UTF-8; values other than text, such as lists, are absent.
    Values values() const;

    /// Sets or replaces the value of a key; none removes it. The rest of the text stays as it was.
    void set(std::string_view key, const std::optional<std::string> &value);

    std::string text() const;

private:
    struct Line {
        std::string text;
        std::string key; ///< key of a value in the general section; else empty
    };

    std::vector<Line> m_lines;
};

} // namespace kelmoth
