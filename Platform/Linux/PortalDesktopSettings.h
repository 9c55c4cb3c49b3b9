#pragma once

#include "Platform/DesktopSettings.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>

namespace kelmoth {

/// The desktop's taste as the settings portal of the session bus tells it, kept up to date. Nothing here
/// waits: until the portal has answered, and for as long as there is none, the desktop has no preference.
/// A portal that comes later is heard; what a portal said stands until it, or its successor, says otherwise.
/// Main thread.
class PortalDesktopSettings : public QObject, public DesktopSettings {
    Q_OBJECT

public:
    /// `bus` is the session bus, or a connection that is none where there is no bus. The portal is asked once
    /// the event loop runs.
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
    /// What a portal has said as a whole.
    struct Taste {
        ColorScheme colorScheme = ColorScheme::noPreference;
        std::optional<std::uint32_t> accentColor;
        bool reduceMotion = false;
        bool reduceTransparency = false;
        double textScale = 1;

        /// Takes one setting in; a value of a type or range that does not belong to it says nothing.
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
    bool m_isStale = false; ///< something changed since the portal was asked
    Taste m_taste;
    std::function<void()> m_handler;

private Q_SLOTS:
    void read();
    void ownerChanged(const QString &name, const QString &before, const QString &now);
};

} // namespace kelmoth
