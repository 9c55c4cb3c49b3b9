#include "UI/Views/ContentModel.h"

#include "Core/Services/Application.h"
#include "Core/Services/L10n.h"
#include "UI/Views/Texts.h"

#include <QCoreApplication>

#include <array>
#include <utility>

namespace kelmoth {

namespace {

struct Tab {
    std::string_view title; ///< English, a translation key
    std::string_view icon;
};

/// One row for each tab, in its order.
constexpr std::array tabTable{
    Tab{"DPI", "target"},
    Tab{"RGB", "lightbulb.fill"},
    Tab{"Buttons", "hand.tap.fill"},
    Tab{"Settings", "gearshape.fill"},
};

constexpr std::string_view cableLabel = "USB cable";

/// The symbol of a battery that holds at least so many per cent.
struct BatterySymbol {
    Int from;
    std::string_view icon;
};

constexpr std::array batterySymbols{
    BatterySymbol{90, "battery.100"},
    BatterySymbol{65, "battery.75"},
    BatterySymbol{40, "battery.50"},
    BatterySymbol{15, "battery.25"},
};

constexpr std::string_view orange = "orange";
constexpr std::string_view secondary = "secondaryLabel";

bool isHyperSpeed(const RazerDevice &device)
{
    const auto model = device.model();
    return model == BasiliskProductID::basiliskV3XHyperSpeed ||
           model == BasiliskProductID::basiliskV3XHyperSpeed2;
}

} // namespace

/// Why a page cannot be used.
struct ContentModel::Notice {
    /// A line under the title.
    struct Line {
        std::string_view label; ///< English, a translation key
        int size = 12;
        bool isMedium = false;
        std::string_view colorName = secondary;
        int gap = 0;
    };

    std::string_view icon;
    std::string_view colorName;
    std::string_view
        title; ///< English, a translation key; a format that the device's name fills over Bluetooth
    std::vector<Line> lines;
};

ContentModel::ContentModel(DeviceManager &manager, ToastManager &toastManager, Preferences &preferences,
                           Appearance &appearance, LoginItem &loginItem, QObject *parent)
    : QObject(parent),
      m_deviceManager(manager),
      m_loss(connect(&manager, &DeviceManager::connectedDeviceChanged, this, &ContentModel::tellLoss)),
      m_wasSupported(isDeviceSupported()),
      m_appearance(appearance),
      m_dpiTab(manager, preferences),
      m_rgbTab(manager, preferences),
      m_buttonsTab(manager, preferences),
      m_settingsTab(manager, preferences, loginItem),
      m_about(preferences),
      m_toast(toastManager)
{
    connect(&manager, &DeviceManager::connectedDeviceChanged, this, &ContentModel::followDevice);
    connect(&appearance, &Appearance::changed, this, &ContentModel::appearanceChanged);
    connect(&preferences, &Preferences::languageModeChanged, this, [this] {
        Q_EMIT headerChanged();
        Q_EMIT footerTextChanged();
    });
    updateTabs();
    updateNotice();
}

bool ContentModel::isDeviceSupported() const
{
    return device() && device()->isConfigurable();
}

QString ContentModel::deviceName() const
{
    return panelText(device() ? device()->name() : L10n::text("No Device"));
}

QString ContentModel::connectionIcon() const
{
    const bool isCable = device() && device()->connectionLabel() == cableLabel;
    return panelText(isCable ? "cable.connector" : "wifi");
}

QString ContentModel::connectionLabel() const
{
    return panelText(device() ? device()->connectionLabel() : "No connection");
}

bool ContentModel::showsBattery() const
{
    return isDeviceSupported() && device()->capabilities().hasBattery;
}

QString ContentModel::batteryIcon() const
{
    if (isCharging()) {
        return QStringLiteral("battery.100.bolt");
    }
    const Int level = device() ? device()->batteryLevel.value_or(0) : 0;
    for (const auto &symbol : batterySymbols) {
        if (level >= symbol.from) {
            return panelText(symbol.icon);
        }
    }
    return QStringLiteral("battery.0");
}

QString ContentModel::batteryText() const
{
    if (!device() || !device()->batteryLevel) {
        return QStringLiteral("–");
    }
    return panelText(L10n::formatted("%lld%%", std::to_string(*device()->batteryLevel)));
}

void ContentModel::selectTab(int tab)
{
    if (tab < 0 || tab >= std::ssize(tabTable) || tab == m_selectedTab) {
        return;
    }
    m_selectedTab = tab;
    page().reset();
    page().shown();
    updateTabs();
    Q_EMIT selectedTabChanged();
    Q_EMIT pageChanged();
}

TabModel &ContentModel::page()
{
    switch (m_selectedTab) {
    case rgb:
        return m_rgbTab;
    case buttons:
        return m_buttonsTab;
    case settings:
        return m_settingsTab;
    default:
        return m_dpiTab;
    }
}

bool ContentModel::dismiss()
{
    if (m_showAbout) {
        closeAbout();
        return true;
    }
    return m_selectedTab == buttons && m_buttonsTab.closePicker();
}

void ContentModel::panelShown()
{
    page().shown();
    if (!m_appeared) {
        m_appeared = true;
        Q_EMIT appearedChanged();
    }
}

const ContentModel::Notice &ContentModel::notice() const
{
    static const Notice noDevice{"computermouse",
                                 secondary,
                                 "No Device Connected",
                                 {{.label = "Connect Razer Basilisk V3 series\nvia USB dongle (2.4GHz)"},
                                  {.label = "Bluetooth configuration is not available in this version",
                                   .size = 10,
                                   .isMedium = true,
                                   .colorName = orange,
                                   .gap = 4}}};
    static const auto bluetooth = [](std::string_view advice) {
        return Notice{"wifi.slash",
                      orange,
                      "Bluetooth connected: %@",
                      {{.label = "Kelmoth cannot configure this mouse over Bluetooth in this version."},
                       {.label = advice, .size = 11}}};
    };
    static const Notice byCableOrReceiver =
        bluetooth("Use USB or a 2.4 GHz receiver to configure this mouse.");
    static const Notice byReceiver = bluetooth("Use the 2.4 GHz receiver to configure this mouse.");
    static const Notice unsupported{
        "exclamationmark.triangle.fill",
        orange,
        "Unsupported Device",
        {{.label = "This app supports only:\n• Basilisk V3\n• Basilisk V3 Pro\n• Basilisk V3 X HyperSpeed",
          .size = 11}}};
    if (!m_noticeDevice) {
        return noDevice;
    }
    if (m_noticeDevice->isBluetooth()) {
        return isHyperSpeed(*m_noticeDevice) ? byReceiver : byCableOrReceiver;
    }
    return unsupported;
}

QString ContentModel::noticeIcon() const
{
    return panelText(notice().icon);
}

QString ContentModel::noticeColorName() const
{
    return panelText(notice().colorName);
}

QString ContentModel::noticeTitle() const
{
    if (m_noticeDevice && m_noticeDevice->isBluetooth()) {
        return panelText(L10n::formatted(notice().title, m_noticeDevice->name()));
    }
    return panelText(notice().title);
}

QString ContentModel::footerText() const
{
    return panelText(L10n::formatted("Kelmoth v%@", application::version()));
}

void ContentModel::openAbout()
{
    if (!m_showAbout) {
        m_about.reset();
        setShowAbout(true);
    }
}

void ContentModel::closeAbout()
{
    setShowAbout(false);
}

void ContentModel::setShowAbout(bool showAbout)
{
    if (showAbout == m_showAbout) {
        return;
    }
    m_showAbout = showAbout;
    Q_EMIT showAboutChanged();
}

void ContentModel::terminate()
{
    QCoreApplication::quit();
}

void ContentModel::tellLoss()
{
    if (std::exchange(m_wasSupported, isDeviceSupported()) && !m_wasSupported) {
        Q_EMIT deviceLost();
    }
}

void ContentModel::followDevice()
{
    updateNotice();
    Q_EMIT headerChanged();
    Q_EMIT pageChanged();
}

void ContentModel::updateTabs()
{
    RowsModel::Rows rows;
    for (const auto &tab : tabTable) {
        rows.append({panelText(tab.title), panelText(tab.icon), rows.size() == m_selectedTab});
    }
    m_tabs.setRows(std::move(rows));
}

void ContentModel::updateNotice()
{
    if (!isDeviceSupported()) {
        m_noticeDevice = device();
    }
    RowsModel::Rows rows;
    for (const auto &line : notice().lines) {
        rows.append({panelText(line.label), line.size, line.isMedium, panelText(line.colorName), line.gap});
    }
    m_noticeLines.setRows(std::move(rows));
}

} // namespace kelmoth
