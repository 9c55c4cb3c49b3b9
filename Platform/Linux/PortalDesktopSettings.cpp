#include "Platform/Linux/PortalDesktopSettings.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QStringList>

#include <array>
#include <cmath>
#include <set>
#include <utility>

namespace kelmoth {

namespace {

const auto portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto gnomeInterface = QStringLiteral("org.gnome.desktop.interface");
const auto gnomeAccessibility = QStringLiteral("org.gnome.desktop.a11y.interface");
const auto plasma = QStringLiteral("org.kde.kdeglobals.KDE");

/// Far more than desktops keep under those four names; the rest of a longer answer is not read.
constexpr int mostEntries = 2000;

/// Unwraps a value from its variants; some portals nest two.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

std::optional<bool> truth(const QVariant &value)
{
    return value.typeId() == QMetaType::Bool ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<uint> number(const QVariant &value)
{
    return value.typeId() == QMetaType::UInt ? std::optional(value.toUInt()) : std::nullopt;
}

ColorScheme scheme(const QVariant &value)
{
    switch (number(value).value_or(0)) {
    case 1:
        return ColorScheme::dark;
    case 2:
        return ColorScheme::light;
    default:
        return ColorScheme::noPreference;
    }
}

/// Three channels from 0 to 1; values outside mean that there is no accent colour.
std::optional<std::uint32_t> color(const QVariant &value)
{
    if (value.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return std::nullopt;
    }
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QStringLiteral("(ddd)")) {
        return std::nullopt;
    }
    std::array<double, 3> channels{};
    argument.beginStructure();
    for (auto &channel : channels) {
        argument >> channel;
    }
    argument.endStructure(); // otherwise it is never freed
    std::uint32_t result = 0;
    for (const double channel : channels) {
        const bool isChannel = channel >= 0.0 && channel <= 1.0; // false for NaN
        if (!isChannel) {
            return std::nullopt;
        }
        result = result << 8 | static_cast<std::uint32_t>(std::lround(channel * 255));
    }
    return result;
}

} // namespace

void PortalDesktopSettings::Taste::applyAppearance(const QString &key, const QVariant &value)
{
    if (key == QStringLiteral("color-scheme")) {
        colorScheme = scheme(value);
    } else if (key == QStringLiteral("accent-color")) {
        accentColor = color(value);
    } else if (key == QStringLiteral("contrast")) {
        reduceTransparency = reduceTransparency || number(value) == 1;
    }
}

void PortalDesktopSettings::Taste::applyGnome(const QString &key, const QVariant &value)
{
    if (key == QStringLiteral("enable-animations")) {
        reduceMotion = reduceMotion || truth(value) == false;
    } else if (key == QStringLiteral("text-scaling-factor") && value.typeId() == QMetaType::Double) {
        const auto factor = value.toDouble();
        const bool isFactor = factor >= 0.5 && factor <= 3; // false for NaN
        textScale = isFactor ? factor : 1;
    }
}

void PortalDesktopSettings::Taste::apply(const QString &settingsNamespace, const QString &key,
                                         const QVariant &value)
{
    if (settingsNamespace == appearance) {
        applyAppearance(key, value);
    } else if (settingsNamespace == gnomeInterface) {
        applyGnome(key, value);
    } else if (settingsNamespace == gnomeAccessibility && key == QStringLiteral("high-contrast")) {
        reduceTransparency = reduceTransparency || truth(value) == true;
    } else if (settingsNamespace == plasma && key == QStringLiteral("AnimationDurationFactor")) {
        const bool isTold = value.typeId() == QMetaType::QString || value.typeId() == QMetaType::Double;
        bool isNumber = false;
        const auto factor = value.toDouble(&isNumber);
        reduceMotion = reduceMotion || (isTold && isNumber && factor == 0.0);
    }
}

/// The answer joins the values of several portals, the desktop's own first: the first value of a setting
/// counts.
PortalDesktopSettings::Taste PortalDesktopSettings::tasteFrom(const QDBusMessage &reply)
{
    Taste taste;
    std::set<std::pair<QString, QString>> told;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QStringLiteral("a{sa{sv}}")) {
        return taste;
    }
    const auto all = reply.arguments().constFirst().value<QDBusArgument>();
    int budget = mostEntries;
    all.beginMap();
    while (!all.atEnd() && budget > 0) {
        QString settingsNamespace;
        all.beginMapEntry();
        all >> settingsNamespace;
        all.beginMap();
        for (; !all.atEnd() && budget > 0; --budget) {
            QString key;
            QDBusVariant value;
            all.beginMapEntry();
            all >> key >> value;
            all.endMapEntry();
            if (told.emplace(settingsNamespace, key).second) {
                taste.apply(settingsNamespace, key, unwrapped(value.variant()));
            }
        }
        all.endMap();
        all.endMapEntry();
        --budget;
    }
    all.endMap();
    return taste;
}

PortalDesktopSettings::PortalDesktopSettings(QDBusConnection bus) : m_bus(std::move(bus))
{
    if (m_bus.isConnected()) {
        // Later, so that start-up, above all the status item, does not queue behind it on the bus.
        QMetaObject::invokeMethod(this, &PortalDesktopSettings::listen, Qt::QueuedConnection);
    }
}

void PortalDesktopSettings::listen()
{
    // No sender is given: its lookup would block. A forged signal only causes a query.
    for (const auto &settingsNamespace : {appearance, gnomeInterface, gnomeAccessibility, plasma}) {
        m_bus.connect(QString(), portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                      {settingsNamespace}, QString(), this, SLOT(read()));
    }
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
                  QStringLiteral("NameOwnerChanged"), {portalService}, QString(), this,
                  SLOT(ownerChanged(QString, QString, QString)));
    read();
}

void PortalDesktopSettings::ownerChanged(const QString &, const QString &, const QString &now)
{
    if (!now.isEmpty()) {
        read();
    }
}

/// Queries all settings. During a query further changes only mark it stale, so that at most one call is
/// pending however many signals arrive.
void PortalDesktopSettings::read()
{
    if (m_reading) {
        m_isStale = true;
        return;
    }
    auto call = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface,
                                               QStringLiteral("ReadAll"));
    call << QStringList{appearance, gnomeInterface, gnomeAccessibility, plasma};
    m_reading = std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(call));
    connect(m_reading.get(), &QDBusPendingCallWatcher::finished, this, [this] {
        const auto reply = m_reading->reply();
        m_reading.release()->deleteLater(); // it is emitting a signal
        take(reply);
        if (std::exchange(m_isStale, false)) {
            read();
        }
    });
}

void PortalDesktopSettings::take(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage) {
        return; // no portal, or an error: keep the values
    }
    const auto taste = tasteFrom(reply);
    if (taste == m_taste) {
        return;
    }
    m_taste = taste;
    if (m_handler) {
        m_handler();
    }
}

} // namespace kelmoth
