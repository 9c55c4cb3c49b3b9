#include "Platform/Qt/QtPlatform.h"

#include "Platform/Platform.h"
#include "Platform/Qt/ResourceBundle.h"
#include "Platform/Qt/SettingsUserDefaults.h"

#include <QStandardPaths>

namespace kelmoth {

namespace {

const auto bundleIdentifier = QStringLiteral("com.kelmoth.app");

} // namespace

QString settingsDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1Char('/') +
           bundleIdentifier;
}

std::shared_ptr<UserDefaults> settingsUserDefaults(std::chrono::milliseconds longestWait)
{
    return std::make_shared<SettingsUserDefaults>(settingsDirectory() + QStringLiteral("/defaults.ini"),
                                                  longestWait);
}

std::shared_ptr<const Bundle> resourceMainBundle()
{
    return std::make_shared<ResourceBundle>(bundleIdentifier, QStringLiteral(KELMOTH_VERSION),
                                            QStringLiteral(":/kelmoth"));
}

void fillQtPlatform(Platform &platform)
{
    platform.userDefaults =
        settingsUserDefaults(std::chrono::seconds{4}); // desktops kill programs later at logout
    platform.mainBundle = resourceMainBundle();
}

} // namespace kelmoth
