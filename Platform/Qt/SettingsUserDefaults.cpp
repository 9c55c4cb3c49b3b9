#include "Platform/Qt/SettingsUserDefaults.h"

#include <QSettings>

namespace kelmoth {

SettingsUserDefaults::SettingsUserDefaults(QString path) : m_path(std::move(path)) {}

std::int64_t SettingsUserDefaults::integerForKey(std::string_view key) const
{
    // Objects on one file share what they have read and look for changes of the file by themselves.
    const QSettings settings(m_path, QSettings::IniFormat);
    const auto name = QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
    bool isInteger = false;
    const auto value = settings.value(name).toString().toLongLong(&isInteger);
    return isInteger ? value : 0;
}

} // namespace kelmoth
