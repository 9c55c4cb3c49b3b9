#include "Core/Services/Appearance.h"
#include "Platform/Simulated/MemoryDefaults.h"
#include "Tests/Services/FakeDesktopSettings.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace kelmoth {

class AppearanceTest : public testing::Test {
protected:
    std::shared_ptr<MemoryDefaults> defaults = std::make_shared<MemoryDefaults>();
    std::shared_ptr<FakeDesktopSettings> desktop = std::make_shared<FakeDesktopSettings>();
    Preferences preferences{defaults};
};

TEST_F(AppearanceTest, PreferenceOverridesDesktopOverridesPalette)
{
    using Row = std::tuple<std::int64_t, ColorScheme, bool, bool>;
    using enum ColorScheme;
    const std::vector<Row> rows{
        {0, noPreference, false, false}, {0, noPreference, true, true}, {0, light, true, false},
        {0, dark, false, true},          {1, dark, true, false},        {2, light, false, true},
        {7, dark, false, true},          {-1, light, true, false},
    };
    for (const auto &[preference, scheme, palette, isDark] : rows) {
        defaults->setInteger("appearanceMode", preference);
        desktop->scheme = scheme;
        Appearance appearance(preferences, desktop);
        appearance.setPaletteIsDark(palette);
        EXPECT_EQ(appearance.isDark(), isDark) << preference << " " << int(scheme);
    }
}

TEST_F(AppearanceTest, EmitsChangesUntilItIsDestroyed)
{
    {
        Appearance appearance(preferences, desktop);
        const QSignalSpy changes(&appearance, &Appearance::changed);
        desktop->handler();
        EXPECT_EQ(changes.size(), 0) << "nothing is different";

        desktop->accent = 0x12F0A5;
        desktop->isMotionReduced = true;
        desktop->handler();
        EXPECT_EQ(changes.size(), 1);
        EXPECT_EQ(appearance.accent(), 0x12F0A5);
        EXPECT_TRUE(appearance.reduceMotion());
        EXPECT_FALSE(appearance.reduceTransparency());

        preferences.setAppearanceMode(2);
        EXPECT_EQ(changes.size(), 2);
        EXPECT_TRUE(appearance.isDark());
    }
    EXPECT_FALSE(desktop->handler) << "the desktop must not call what is gone";
    preferences.setAppearanceMode(1);
    EXPECT_EQ(defaults->integerForKey("appearanceMode"), 1);
}

} // namespace kelmoth
