#include "Core/Services/Appearance.h"
#include "Platform/Simulated/MemoryDefaults.h"
#include "Tests/Services/FakeDesktopSettings.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace kelmoth {
namespace {

class AppearanceTest : public testing::Test {
protected:
    std::shared_ptr<MemoryDefaults> defaults = std::make_shared<MemoryDefaults>();
    std::shared_ptr<FakeDesktopSettings> desktop = std::make_shared<FakeDesktopSettings>();
    Preferences preferences{defaults};
};

TEST_F(AppearanceTest, PutsThePreferenceBeforeTheDesktopAndThatBeforeThePalette)
{
    struct Row {
        std::int64_t preference;
        ColorScheme desktop;
        bool palette;
        bool isDark;
    };
    using enum ColorScheme;
    const std::vector<Row> rows{
        {0, noPreference, false, false}, {0, noPreference, true, true}, {0, light, true, false},
        {0, dark, false, true},          {1, dark, true, false},        {2, light, false, true},
        {7, dark, false, true},          {-1, light, true, false},
    };
    for (const auto &row : rows) {
        defaults->setInteger("appearanceMode", row.preference);
        desktop->scheme = row.desktop;
        Appearance appearance(preferences, desktop);
        appearance.setPaletteIsDark(row.palette);
        EXPECT_EQ(appearance.isDark(), row.isDark) << row.preference << " " << int(row.desktop);
    }
}

TEST_F(AppearanceTest, TellsOfChangesAsLongAsItLives)
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
        EXPECT_EQ(appearance.accent(), (RGBColor{0x12, 0xF0, 0xA5}));
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

} // namespace
} // namespace kelmoth
