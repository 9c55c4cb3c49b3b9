#include "Core/Services/Preferences.h"

#include "Core/Services/L10n.h"
#include "Core/Services/SharedInstance.h"
#include "Platform/Platform.h"

namespace kelmoth {

Preferences &Preferences::shared()
{
    return sharedInstance([] { return std::make_unique<Preferences>(Platform::current().userDefaults); });
}

Preferences::Preferences(std::shared_ptr<UserDefaults> defaults, QObject *parent)
    : QObject(parent), m_defaults(std::move(defaults))
{
}

std::int64_t Preferences::appearanceMode() const
{
    return m_defaults->integerForKey(appearanceModeKey);
}

void Preferences::setAppearanceMode(std::int64_t mode)
{
    if (mode == appearanceMode()) {
        return;
    }
    m_defaults->setInteger(appearanceModeKey, mode);
    Q_EMIT appearanceModeChanged();
}

std::int64_t Preferences::languageMode() const
{
    return m_defaults->integerForKey(L10n::languageModeKey);
}

bool Preferences::showsBatteryNotifications() const
{
    constexpr std::string_view key = "batteryNotifications";
    return !m_defaults->hasObjectForKey(key) || m_defaults->integerForKey(key) != 0;
}

void Preferences::chooseLanguage(std::int64_t mode)
{
    if (mode == languageMode()) {
        return;
    }
    m_defaults->setInteger(L10n::languageModeKey, mode);
    Q_EMIT languageModeChanged();
    Q_EMIT kelmothLanguageDidChange();
}

} // namespace kelmoth
