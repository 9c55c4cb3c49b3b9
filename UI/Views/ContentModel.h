#pragma once

#include "Core/Services/Appearance.h"
#include "UI/Views/AboutModel.h"
#include "UI/Views/ButtonsTabModel.h"
#include "UI/Views/DPITabModel.h"
#include "UI/Views/RGBTabModel.h"
#include "UI/Views/SettingsTabModel.h"
#include "UI/Views/ToastModel.h"

namespace kelmoth {

/// The panel itself, with the models of all that is in it. The view shows of it:
/// - the header: `deviceName` (shown as it stands), `connectionIcon`, `connectionLabel` (a key) and, while
///   `showsBattery`, `batteryIcon` and `batteryText` (as it stands), and for assistive tools `isCharging`;
/// - `tabs`: a button for each row of `label` (a key), `icon`, `selected`; a tap is `selectTab(row)`;
/// - the page of `selectedTab` (0 DPI, 1 RGB, 2 Buttons, 3 Settings), with `dpiTab`, `rgbTab`, `buttonsTab`
/// or
///   `settingsTab`; usable while `isPageUsable`, else veiled and without interaction;
/// - over a page that is not usable the notice: `noticeIcon` in the theme's colour `noticeColorName`,
///   `noticeTitle` (a key, or text that is ready: look it up either way) and `noticeLines`, rows of `label`
///   (a key), `size` (points), `medium` (weight), `colorName` (of the theme), `gap` (points above it, beyond
///   the usual); what it said last stays while it leaves the screen;
/// - the footer: `footerText` (ready to show), buttons for `openAbout()` and `terminate()`;
/// - while `showAbout`, the sheet of `about`, closed by `closeAbout()`; over everything `toast`.
/// The view calls `panelShown()` whenever it comes on screen; `appeared` is true from the first time on.
/// Without motion nothing moves while `reduceMotion`.
class ContentModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString deviceName READ deviceName NOTIFY headerChanged)
    Q_PROPERTY(QString connectionIcon READ connectionIcon NOTIFY headerChanged)
    Q_PROPERTY(QString connectionLabel READ connectionLabel NOTIFY headerChanged)
    Q_PROPERTY(bool showsBattery READ showsBattery NOTIFY headerChanged)
    Q_PROPERTY(QString batteryIcon READ batteryIcon NOTIFY headerChanged)
    Q_PROPERTY(QString batteryText READ batteryText NOTIFY headerChanged)
    Q_PROPERTY(bool isCharging READ isCharging NOTIFY headerChanged)
    Q_PROPERTY(kelmoth::RowsModel *tabs READ tabs CONSTANT)
    Q_PROPERTY(int selectedTab READ selectedTab NOTIFY selectedTabChanged)
    Q_PROPERTY(bool isDeviceSupported READ isDeviceSupported NOTIFY headerChanged)
    Q_PROPERTY(bool isPageUsable READ isPageUsable NOTIFY pageChanged)
    Q_PROPERTY(QString noticeIcon READ noticeIcon NOTIFY headerChanged)
    Q_PROPERTY(QString noticeColorName READ noticeColorName NOTIFY headerChanged)
    Q_PROPERTY(QString noticeTitle READ noticeTitle NOTIFY headerChanged)
    Q_PROPERTY(kelmoth::RowsModel *noticeLines READ noticeLines CONSTANT)
    Q_PROPERTY(QString footerText READ footerText NOTIFY footerTextChanged)
    Q_PROPERTY(bool showAbout READ showAbout NOTIFY showAboutChanged)
    Q_PROPERTY(bool appeared READ appeared NOTIFY appearedChanged)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY appearanceChanged)
    Q_PROPERTY(kelmoth::DPITabModel *dpiTab READ dpiTab CONSTANT)
    Q_PROPERTY(kelmoth::RGBTabModel *rgbTab READ rgbTab CONSTANT)
    Q_PROPERTY(kelmoth::ButtonsTabModel *buttonsTab READ buttonsTab CONSTANT)
    Q_PROPERTY(kelmoth::SettingsTabModel *settingsTab READ settingsTab CONSTANT)
    Q_PROPERTY(kelmoth::AboutModel *about READ about CONSTANT)
    Q_PROPERTY(kelmoth::ToastModel *toast READ toast CONSTANT)

public:
    enum AppTab { dpi, rgb, buttons, settings };
    Q_ENUM(AppTab)

    /// The collaborators outlive the panel.
    ContentModel(DeviceManager &deviceManager, ToastManager &toastManager, Preferences &preferences,
                 Appearance &appearance, LoginItem &loginItem, QObject *parent = nullptr);

    QString deviceName() const;
    QString connectionIcon() const;
    QString connectionLabel() const;
    bool showsBattery() const;
    QString batteryIcon() const;
    QString batteryText() const;
    bool isCharging() const { return device() && device()->isCharging; }

    RowsModel *tabs() { return &m_tabs; }
    int selectedTab() const { return m_selectedTab; }
    Q_INVOKABLE void selectTab(int tab);

    bool isDeviceConnected() const { return m_deviceManager.connectedDevice().has_value(); }
    bool isDeviceSupported() const;
    bool isPageUsable() const { return isDeviceSupported() || m_selectedTab == settings; }

    QString noticeIcon() const;
    QString noticeColorName() const;
    QString noticeTitle() const;
    RowsModel *noticeLines() { return &m_noticeLines; }

    QString footerText() const;

    bool showAbout() const { return m_showAbout; }
    /// Presents the About sheet with its entrance; nothing while it is presented. Answers the footer and the
    /// menu alike.
    Q_INVOKABLE void openAbout();
    Q_INVOKABLE void closeAbout();

    /// Closes what lies open, as Escape does: the sheet, else the page's picker. False when nothing does.
    Q_INVOKABLE bool dismiss();

    bool appeared() const { return m_appeared; }
    Q_INVOKABLE void panelShown();

    bool reduceMotion() const { return m_appearance.reduceMotion(); }

    /// How much larger than usual the desktop wants texts, 0.5 to 3.
    double textScale() const { return m_appearance.textScale(); }

    /// Ends the application.
    Q_INVOKABLE void terminate();

    DPITabModel *dpiTab() { return &m_dpiTab; }
    RGBTabModel *rgbTab() { return &m_rgbTab; }
    ButtonsTabModel *buttonsTab() { return &m_buttonsTab; }
    SettingsTabModel *settingsTab() { return &m_settingsTab; }
    AboutModel *about() { return &m_about; }
    ToastModel *toast() { return &m_toast; }

Q_SIGNALS:
    /// No mouse can be configured any more; before any page follows.
    void deviceLost();
    void headerChanged();
    void selectedTabChanged();
    void pageChanged();
    void footerTextChanged();
    void showAboutChanged();
    void appearedChanged();
    void appearanceChanged();

private:
    struct Notice;

    const std::optional<RazerDevice> &device() const { return m_deviceManager.connectedDevice(); }
    const Notice &notice() const;
    TabModel &page();
    void tellLoss();
    void followDevice();
    void updateTabs();
    void updateNotice();
    void setShowAbout(bool showAbout);

    DeviceManager &m_deviceManager;
    QMetaObject::Connection m_loss; ///< made before those of the pages
    bool m_wasSupported = false;
    Appearance &m_appearance;
    int m_selectedTab = dpi;
    bool m_showAbout = false;
    bool m_appeared = false;
    std::optional<RazerDevice> m_noticeDevice; ///< of which the notice speaks; none: that there is none
    RowsModel m_tabs{{"label", "icon", "selected"}};
    RowsModel m_noticeLines{{"label", "size", "medium", "colorName", "gap"}};
    DPITabModel m_dpiTab;
    RGBTabModel m_rgbTab;
    ButtonsTabModel m_buttonsTab;
    SettingsTabModel m_settingsTab;
    AboutModel m_about;
    ToastModel m_toast;
};

} // namespace kelmoth
