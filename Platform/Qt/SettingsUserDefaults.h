#pragma once

#include "Platform/UserDefaults.h"

#include <QString>

namespace kelmoth {

/// Preferences in an INI file.
class SettingsUserDefaults : public UserDefaults {
public:
    /// A missing or unreadable file reads as empty.
    explicit SettingsUserDefaults(QString path);

    std::int64_t integerForKey(std::string_view key) const override;

private:
    QString m_path;
};

} // namespace kelmoth
