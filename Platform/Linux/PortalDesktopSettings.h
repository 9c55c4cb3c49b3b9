#pragma once

#include "Platform/DesktopSettings.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>

namespace kelmoth {

/// The desktop's settings from the settings portal on the session bus, kept up to date. Never blocks: the
/// desktop has no preference until a portal answers. A portal that starts later is used; its values stay
/// until it, or its successor, changes them. Main thread.
class PortalDesktopSettings : public QObject, public DesktopSettings {
    Q_OBJECT

public:
    /// `bus` is the session bus, or an invalid connection without one. The portal is queried once the event
    /// loop runs.
    explicit PortalDesktopSettings(QDBusConnection bus);
    ~PortalDesktopSettings() override = default;
    PortalDesktopSettings(const PortalDesktopSettings &) = delete;
    PortalDesktopSettings &operator=(const PortalDesktopSettings &) = delete;

    ColorScheme colorScheme() const override { return m_taste.colorScheme; }
    std::optional<std::uint32_t> accentColor() const override { return m_taste.accentColor; }
    bool reduceMotion() const override { return m_taste.reduceMotion; }
    bool reduceTransparency() const override { return m_taste.reduceTransparency; }
    double textScale() const override { return m_taste.textScale; }
    void setChangeHandler(std::function<void()> handler) override { m_handler = std::move(handler); }

private:
    /// All values of a portal.
    struct Taste {
        ColorScheme colorScheme = ColorScheme::noPreference;
        std::optional<std::uint32_t> accentColor;
        bool reduceMotion = false;
        bool reduceTransparency = false;
        double textScale = 1;

        /// Stores one setting; ignores a value of the wrong type or range.
        void apply(const QString &settingsNamespace, const QString &key, const QVariant &value);
        void applyAppearance(const QString &key, const QVariant &value);
        void applyGnome(const QString &key, const QVariant &value);

        bool operator==(const Taste &) const = default;
    };

    static Taste tasteFrom(const QDBusMessage &reply);

    void listen();
    void take(const QDBusMessage &reply);

    QDBusConnection m_bus;
    std::unique_ptr<QDBusPendingCallWatcher> m_reading;
    bool m_isStale = false; ///< a setting changed since the last query
    Taste m_taste;
    std::function<void()> m_handler;

private Q_SLOTS:
    void read();
    void ownerChanged(const QString &name, const QString &before, const QString &now);
};

} // namespace kelmoth
