#pragma once

#include "Core/Services/Preferences.h"
#include "Platform/DesktopSettings.h"

#include <QObject>

#include <cstdint>
#include <memory>
#include <optional>

namespace kelmoth {

/// How the program is to look: what the user prefers, else what the desktop says, live. Main thread.
class Appearance : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY changed)
    Q_PROPERTY(bool reduceTransparency READ reduceTransparency NOTIFY changed)

public:
    /// The scheme of the whole application; `system` when the program names none of its own.
    enum class Mode { system, light, dark };

    /// The application's one instance, on the shared preferences and the installed platform's desktop; made
    /// on first use, gone with the application object.
    static Appearance &shared();

    /// The preferences outlive the appearance. Without a desktop only they and the palette count. Takes the
    /// desktop's one change handler.
    Appearance(Preferences &preferences, std::shared_ptr<DesktopSettings> desktop, QObject *parent = nullptr);
    ~Appearance() override;
    Appearance(const Appearance &) = delete;
    Appearance &operator=(const Appearance &) = delete;

    /// What a stored preference asks for: 1 light, 2 dark, anything else what the system does.
    static Mode mode(std::int64_t appearanceMode);

    /// What the stored preference asks for now.
    Mode mode() const { return mode(m_preferences.appearanceMode()); }

    bool isDark() const { return m_looks.isDark; }

    /// The desktop's accent colour as 0xRRGGBB; none when the toolkit's palette decides.
    std::optional<std::uint32_t> accent() const { return m_looks.accent; }

    bool reduceMotion() const { return m_looks.reduceMotion; }
    bool reduceTransparency() const { return m_looks.reduceTransparency; }

    /// How much larger than usual the desktop wants texts, 0.5 to 3.
    double textScale() const { return m_looks.textScale; }

    /// Whether the toolkit's palette is a dark one: what counts when neither the preference nor the desktop
    /// names a scheme. Light until told.
    void setPaletteIsDark(bool isDark);

Q_SIGNALS:
    /// Something above, `mode` included, is another than before.
    void changed();

private:
    struct Looks {
        Mode mode = Mode::system;
        bool isDark = false;
        std::optional<std::uint32_t> accent;
        bool reduceMotion = false;
        bool reduceTransparency = false;
        double textScale = 1;

        bool operator==(const Looks &) const = default;
    };

    Looks looks() const;
    bool isSystemDark() const;
    void update();

    Preferences &m_preferences;
    std::shared_ptr<DesktopSettings> m_desktop;
    bool m_paletteIsDark = false;
    Looks m_looks;
};

} // namespace kelmoth
