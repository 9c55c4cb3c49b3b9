#include "UI/Views/SettingsTabModel.h"

#include "Core/Device/LiftOffLevel.h"
#include "Core/Services/Application.h"
#include "Core/Services/L10n.h"
#include "UI/Views/Texts.h"

#include <QPointer>

#include <array>

namespace kelmoth {

namespace {

/// One of the buttons of a choice; its value is its place.
struct Choice {
    std::string_view label; ///< English, a translation key
    std::string_view icon;
};

constexpr std::array appearances{
    Choice{"Auto", "circle.lefthalf.filled"},
    Choice{"Light", "sun.max.fill"},
    Choice{"Dark", "moon.fill"},
};

constexpr std::array languages{Choice{"System", ""}, Choice{"PL · Polski", ""}, Choice{"EN · English", ""}};

template <std::size_t count>
RowsModel::Rows choiceRows(const std::array<Choice, count> &choices, std::int64_t selected)
{
    RowsModel::Rows rows;
    for (const auto &choice : choices) {
        const auto value = static_cast<int>(rows.size());
        rows.append({value, panelText(choice.label), panelText(choice.icon), value == selected});
    }
    return rows;
}

} // namespace

SettingsTabModel::SettingsTabModel(DeviceManager &manager, Preferences &preferences, LoginItem &loginItem,
                                   QObject *parent)
    : TabModel(manager, parent), m_preferences(preferences), m_loginItem(loginItem)
{
    connect(&preferences, &Preferences::appearanceModeChanged, this, &SettingsTabModel::updateChoices);
    connect(&preferences, &Preferences::languageModeChanged, this, [this] {
        updateChoices();
        Q_EMIT loginMessageChanged();
    });
    connect(&manager, &DeviceManager::liftOffLevelChanged, this, [this] {
        updateChoices();
        Q_EMIT liftOffChanged();
    });
    connect(&manager, &DeviceManager::connectedDeviceChanged, this, &SettingsTabModel::liftOffEnabledChanged);
    connect(this, &TabModel::isEnabledChanged, this, &SettingsTabModel::liftOffEnabledChanged);
    updateChoices();
}

void SettingsTabModel::reset()
{
    TabModel::reset();
    m_didLoadLaunchAtLogin = false;
    m_loginNeedsApproval = false;
    setMessage(std::nullopt);
    setSwitch(false);
}

void SettingsTabModel::shown()
{
    loadLaunchAtLoginState();
}

QString SettingsTabModel::liftOffLabel() const
{
    const auto level = liftOffLevelOf(deviceManager().liftOffLevel().value_or(-1));
    return panelText(level ? tableRow(*level).label : "Not set");
}

bool SettingsTabModel::liftOffEnabled() const
{
    const auto &device = deviceManager().connectedDevice();
    return device && device->isConfigurable() && isEnabled();
}

QString SettingsTabModel::loginMessage() const
{
    if (!m_loginMessage) {
        return {};
    }
    const auto &[key, value] = *m_loginMessage;
    return panelText(value ? L10n::formatted(key, *value) : L10n::text(key));
}

void SettingsTabModel::pickAppearance(int value)
{
    if (value >= 0 && value < std::ssize(appearances)) {
        m_preferences.setAppearanceMode(value);
    }
}

void SettingsTabModel::pickLanguage(int value)
{
    if (value >= 0 && value < std::ssize(languages)) {
        m_preferences.chooseLanguage(value);
    }
}

void SettingsTabModel::pickLiftOff(int level)
{
    perform([level](DeviceManager &manager) { return manager.setLiftOff(level); }, [](bool, bool) {});
}

void SettingsTabModel::flipLaunchAtLogin(bool enabled)
{
    if (!m_didLoadLaunchAtLogin || m_isChangingLaunchAtLogin) {
        setSwitch(m_launchAtLogin);
        return;
    }
    setSwitch(enabled);
    setLaunchAtLogin(enabled);
}

void SettingsTabModel::openLoginItems()
{
    m_loginItem.openLoginItemsSettings();
}

void SettingsTabModel::loadLaunchAtLoginState()
{
    m_didLoadLaunchAtLogin = false;
    const auto status = m_loginItem.status();
    setSwitch(status == LoginItemStatus::enabled || status == LoginItemStatus::requiresApproval);
    showLoginStatus(status);
    listenToSwitchSoon();
}

void SettingsTabModel::setLaunchAtLogin(bool enabled)
{
    m_isChangingLaunchAtLogin = true;
    m_loginItem.setEnabled(enabled, [self = QPointer(this), enabled](const auto &error) {
        if (self) {
            self->m_isChangingLaunchAtLogin = false;
            self->launchAtLoginDidChange(enabled, error);
        }
    });
}

void SettingsTabModel::launchAtLoginDidChange(bool enabled, const std::optional<LoginItemError> &error)
{
    if (!error) {
        const auto status = m_loginItem.status();
        setSwitch(enabled); // the page may have been shown anew meanwhile
        showLoginStatus(status);
        if (status == LoginItemStatus::requiresApproval) {
            m_loginItem.openLoginItemsSettings();
        }
        return;
    }
    const auto description = localizedDescription(*error);
    log("❌ Launch at Login error: %s", description.c_str());
    m_didLoadLaunchAtLogin = false;
    setSwitch(!enabled);
    listenToSwitchSoon();
    showLoginStatus(m_loginItem.status());
    if (m_loginItem.isInApplicationsFolder()) {
        setMessage(Message{"Launch at Login could not be changed: %@", description});
    }
}

void SettingsTabModel::showLoginStatus(LoginItemStatus status)
{
    m_loginNeedsApproval = status == LoginItemStatus::requiresApproval;
    if (m_loginNeedsApproval) {
        setMessage(Message{"Allow Kelmoth under Login Items in System Settings.", std::nullopt});
    } else if (m_loginItem.isInApplicationsFolder()) {
        setMessage(std::nullopt);
    } else {
        setMessage(Message{std::string(NotInApplicationsError::key), std::nullopt});
    }
}

void SettingsTabModel::setMessage(std::optional<Message> message)
{
    m_loginMessage = std::move(message);
    Q_EMIT loginMessageChanged();
}

/// Tells also of the value that it had: a switch that the user has flipped comes back to it.
void SettingsTabModel::setSwitch(bool isOn)
{
    m_launchAtLogin = isOn;
    Q_EMIT launchAtLoginChanged();
}

void SettingsTabModel::listenToSwitchSoon()
{
    QMetaObject::invokeMethod(this, [this] { m_didLoadLaunchAtLogin = true; }, Qt::QueuedConnection);
}

void SettingsTabModel::updateChoices()
{
    m_appearanceChoices.setRows(choiceRows(appearances, m_preferences.appearanceMode()));
    m_languageChoices.setRows(choiceRows(languages, m_preferences.languageMode()));
    RowsModel::Rows rows;
    for (const auto level : allCases<LiftOffLevel>()) {
        const int number = static_cast<int>(level);
        rows.append({number, panelText(tableRow(level).title), deviceManager().liftOffLevel() == number});
    }
    m_liftOffChoices.setRows(std::move(rows));
}

} // namespace kelmoth
