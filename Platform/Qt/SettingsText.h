#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmoth {

/// The text of a preferences file, in the INI dialect of QSettings: what that writes is read here, and the
/// other way round. QSettings itself only works on a path, which may lead to anything by the time it is
/// opened. Keys are letters, digits and dots.
class SettingsText {
public:
    using Values = std::map<std::string, std::optional<std::string>, std::less<>>;

    /// Takes any text; of one that is no INI file nothing is found.
    explicit SettingsText(std::string_view text);

    /// The values under their keys, UTF-8; one that is not a text is absent, such as a list.
    Values values() const;

    /// Puts a value in place of any other under the key; none takes it away. All else stays as it was
    /// written.
    void set(std::string_view key, const std::optional<std::string> &value);

    std::string text() const;

private:
    struct Line {
        std::string text;
        std::string key; ///< of a value of the file's general section; else empty
    };

    std::vector<Line> m_lines;
};

} // namespace kelmoth
