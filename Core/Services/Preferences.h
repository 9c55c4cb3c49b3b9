#pragma once

#include "Platform/UserDefaults.h"

#include <QObject>

#include <cstdint>
#include <memory>

namespace kelmoth {

/// What the user chose for the program itself. Kept in the user's defaults: every question looks there, every
/// change is there at once. Main thread.
class Preferences : public QObject {
    Q_OBJECT
    Q_PROPERTY(qint64 appearanceMode READ appearanceMode WRITE setAppearanceMode NOTIFY appearanceModeChanged)
    Q_PROPERTY(qint64 languageMode READ languageMode NOTIFY languageModeChanged)

public:
    static constexpr std::string_view appearanceModeKey = "appearanceMode";

    /// The application's one instance, on the installed platform's defaults; made on first use, gone with the
    /// application object.
    static Preferences &shared();

    explicit Preferences(std::shared_ptr<UserDefaults> defaults, QObject *parent = nullptr);

    /// The stored number: 1 light, 2 dark; 0, and any other, follows the desktop.
    std::int64_t appearanceMode() const;
    void setAppearanceMode(std::int64_t mode);

    /// The stored number: 1 Polish, 2 English; 0, and any other, follows the system.
    std::int64_t languageMode() const;

    /// Whether a low battery is told of: unless 0 is stored under "batteryNotifications".
    bool showsBatteryNotifications() const;

    /// Stores the language and tells everybody; nothing when it is the one that is stored.
    void chooseLanguage(std::int64_t mode);

Q_SIGNALS:
    void appearanceModeChanged();
    /// Texts that are looked up from now on are in the new language.
    void languageModeChanged();
    /// The notification of a choice that the user has made, after `languageModeChanged`.
    void kelmothLanguageDidChange();

private:
    std::shared_ptr<UserDefaults> m_defaults;
};

} // namespace kelmoth
