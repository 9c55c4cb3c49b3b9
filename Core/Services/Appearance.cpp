#include "Core/Services/Appearance.h"

#include "Core/Services/SharedInstance.h"
#include "Platform/Platform.h"

namespace kelmoth {

Appearance &Appearance::shared()
{
    return sharedInstance([] {
        return std::make_unique<Appearance>(Preferences::shared(), Platform::current().desktopSettings);
    });
}

Appearance::Appearance(Preferences &preferences, std::shared_ptr<DesktopSettings> desktop, QObject *parent)
    : QObject(parent), m_preferences(preferences), m_desktop(std::move(desktop)), m_looks(looks())
{
    connect(&m_preferences, &Preferences::appearanceModeChanged, this, &Appearance::update);
    if (m_desktop) {
        m_desktop->setChangeHandler([this] { update(); });
    }
}

Appearance::~Appearance()
{
    if (m_desktop) {
        m_desktop->setChangeHandler({});
    }
}

Appearance::Mode Appearance::mode(std::int64_t appearanceMode)
{
    switch (appearanceMode) {
    case 1:
        return Mode::light;
    case 2:
        return Mode::dark;
    default:
        return Mode::system;
    }
}

void Appearance::setPaletteIsDark(bool isDark)
{
    m_paletteIsDark = isDark;
    update();
}

bool Appearance::isSystemDark() const
{
    const auto scheme = m_desktop ? m_desktop->colorScheme() : ColorScheme::noPreference;
    return scheme == ColorScheme::noPreference ? m_paletteIsDark : scheme == ColorScheme::dark;
}

Appearance::Looks Appearance::looks() const
{
    Looks looks;
    looks.mode = mode();
    looks.isDark = looks.mode == Mode::system ? isSystemDark() : looks.mode == Mode::dark;
    if (m_desktop) {
        looks.accent = m_desktop->accentColor();
        looks.reduceMotion = m_desktop->reduceMotion();
        looks.reduceTransparency = m_desktop->reduceTransparency();
        looks.textScale = m_desktop->textScale();
    }
    return looks;
}

void Appearance::update()
{
    auto now = looks();
    if (now == m_looks) {
        return;
    }
    m_looks = now;
    Q_EMIT changed();
}

} // namespace kelmoth
