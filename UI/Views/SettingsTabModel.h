#pragma once

#include "Core/Services/LoginItem.h"
#include "Core/Services/Preferences.h"
#include "UI/Views/RowsModel.h"
#include "UI/Views/TabModel.h"

namespace kelmoth {

/// The settings page. The view shows of it:
/// - `appearanceChoices` and `languageChoices`: choice buttons, a row each of `value` (what `pickAppearance`
///   and `pickLanguage` take), `label` (a key), `icon` (empty: none), `selected`;
/// - the switch at `launchAtLogin`, which a flip asks for by `flipLaunchAtLogin(value)`; under it
///   `loginMessage` (ready to show; empty: none) and, while `loginNeedsApproval`, the button for
///   `openLoginItems()`;
/// - `liftOffLabel` (a key) and `liftOffChoices`: choice buttons, a row each of `value` (what `pickLiftOff`
///   takes), `label` (a key), `selected`, all disabled while not `liftOffEnabled`.
class SettingsTabModel : public kelmoth::TabModel { // in full: for qmllint
    Q_OBJECT
    Q_PROPERTY(kelmoth::RowsModel *appearanceChoices READ appearanceChoices CONSTANT)
    Q_PROPERTY(kelmoth::RowsModel *languageChoices READ languageChoices CONSTANT)
    Q_PROPERTY(kelmoth::RowsModel *liftOffChoices READ liftOffChoices CONSTANT)
    Q_PROPERTY(QString liftOffLabel READ liftOffLabel NOTIFY liftOffChanged)
    Q_PROPERTY(bool liftOffEnabled READ liftOffEnabled NOTIFY liftOffEnabledChanged)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(QString loginMessage READ loginMessage NOTIFY loginMessageChanged)
    Q_PROPERTY(bool loginNeedsApproval READ loginNeedsApproval NOTIFY loginMessageChanged)

public:
    SettingsTabModel(DeviceManager &deviceManager, Preferences &preferences, LoginItem &loginItem,
                     QObject *parent = nullptr);

    void reset() override;
    void shown() override;

    RowsModel *appearanceChoices() { return &m_appearanceChoices; }
    RowsModel *languageChoices() { return &m_languageChoices; }
    RowsModel *liftOffChoices() { return &m_liftOffChoices; }

    /// "Medium (2 mm)"; "Not set" of a level that is unknown or none of the three.
    QString liftOffLabel() const;
    /// Whether there is a mouse whose lift-off distance can be set now.
    bool liftOffEnabled() const;

    /// What the switch shows.
    bool launchAtLogin() const { return m_launchAtLogin; }
    /// In the interface language; empty when there is nothing to say.
    QString loginMessage() const;
    bool loginNeedsApproval() const { return m_loginNeedsApproval; }

    Q_INVOKABLE void pickAppearance(int value);
    Q_INVOKABLE void pickLanguage(int value);
    Q_INVOKABLE void pickLiftOff(int level);
    /// The user has flipped the switch. Only then anything is registered: what the program itself lets the
    /// switch show is not the user's wish.
    Q_INVOKABLE void flipLaunchAtLogin(bool enabled);
    Q_INVOKABLE void openLoginItems();

Q_SIGNALS:
    void liftOffChanged();
    void liftOffEnabledChanged();
    void launchAtLoginChanged();
    void loginMessageChanged();

private:
    /// An English text, which is a translation key, with what fills its placeholder, if it has one.
    struct Message {
        std::string key;
        std::optional<std::string> value;
    };

    void loadLaunchAtLoginState();
    void setLaunchAtLogin(bool enabled);
    void launchAtLoginDidChange(bool enabled, const std::optional<LoginItemError> &error);
    void showLoginStatus(LoginItemStatus status);
    void setMessage(std::optional<Message> message);
    void setSwitch(bool isOn);
    void listenToSwitchSoon();
    void updateChoices();

    Preferences &m_preferences;
    LoginItem &m_loginItem;
    bool m_launchAtLogin = false;
    bool m_didLoadLaunchAtLogin = false;    ///< false while the program sets the switch
    bool m_isChangingLaunchAtLogin = false; ///< the system is asked to, and has not answered yet
    std::optional<Message> m_loginMessage;
    bool m_loginNeedsApproval = false;
    RowsModel m_appearanceChoices{{"value", "label", "icon", "selected"}};
    RowsModel m_languageChoices{{"value", "label", "icon", "selected"}};
    RowsModel m_liftOffChoices{{"value", "label", "selected"}};
};

} // namespace kelmoth
