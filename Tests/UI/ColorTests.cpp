#include "Core/Services/Appearance.h"
#include "Tests/UI/Scene.h"
#include "UI/Components/Contrast.h"
#include "UI/Components/Theme.h"

#include <QGuiApplication>
#include <QSignalSpy>

namespace kelmoth {

/// Dark, opaque, and the accent as a desktop may name it, below zero for none.
class PaletteTest : public testing::TestWithParam<std::tuple<bool, bool, int>> {
protected:
    void expectReadable(const char *what, const QColor &text, const QColor &ground)
    {
        EXPECT_GE(contrastRatio(composited(text, ground), ground), 4.5)
            << what << ": " << text.name().toStdString() << " on " << ground.name().toStdString();
    }

    static Palette paletteOf(bool dark, bool opaque, int accent)
    {
        return Palette::of({dark, opaque, accent < 0 ? QColor() : QColor(QRgb(accent))});
    }
    Palette palette = std::apply(&paletteOf, GetParam());
};

TEST_P(PaletteTest, TextIsReadableOnEveryGround)
{
    const QColor window = palette.windowBackground;
    for (const QColor &ground :
         {window, palette.controlBackground, palette.underPageBackground,
          composited(palette.regularMaterial, window), composited(palette.ultraThinMaterial, window),
          composited(palette.hover, palette.controlBackground)}) {
        expectReadable("label", palette.label, ground);
        expectReadable("secondary label", palette.secondaryLabel, ground);
        expectReadable("tertiary label", palette.tertiaryLabel, ground);
    }
}

TEST_P(PaletteTest, TheAccentIsReadableAsTextAndUnderText)
{
    QColor tint = palette.accent;
    tint.setAlphaF(0.15F);
    expectReadable("accent", palette.accent, palette.windowBackground);
    expectReadable("accent", palette.accent, palette.controlBackground);
    expectReadable("accent", palette.accent, composited(tint, palette.windowBackground));
    expectReadable("white", Qt::white, palette.accentPlain);
    expectReadable("white", Qt::white, palette.accentFill);
    expectReadable("white", Qt::white, palette.accentFillEnd);
}

TEST_P(PaletteTest, AnyColorCanBeMadeReadable)
{
    for (const QColor &color :
         {palette.orange, palette.yellow, palette.cyan, QColor(Qt::white), QColor(Qt::black)}) {
        expectReadable("color", readable(color, palette.windowBackground), palette.windowBackground);
    }
}

INSTANTIATE_TEST_SUITE_P(Schemes, PaletteTest,
                         testing::Combine(testing::Bool(), testing::Bool(),
                                          testing::Values(-1, 0xFFFF66, 0x080808, 0xE62D42, 0x26A269)));

TEST(Contrast, MatchesWCAG)
{
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21, 1e-6);
    EXPECT_NEAR(contrastRatio(0x777777, Qt::white), 4.478, 0.001);
    EXPECT_EQ(readable(0x747474, Qt::white), QColor(0x747474)) << "good enough as it is";
}

TEST(ThemeTest, FollowsThePreferenceWhileTheProgramRuns)
{
    auto &preferences = Preferences::shared();
    Theme theme;
    preferences.setAppearanceMode(1);
    EXPECT_FALSE(theme.isDark());
    const QColor window = theme.windowBackground();
    const QSignalSpy changes(&theme, &Theme::changed);
    preferences.setAppearanceMode(2);
    EXPECT_TRUE(theme.isDark());
    EXPECT_EQ(changes.count(), 1);
    EXPECT_LT(theme.windowBackground().lightness(), window.lightness());
    EXPECT_GT(contrastRatio(theme.stage(QStringLiteral("white")), theme.stage(QStringLiteral("red"))), 1.5);
    EXPECT_LT(qAbs(theme.stage(QStringLiteral("blue")).hue() - QColor(Qt::blue).hue()), 40);
    EXPECT_LT(qAbs(theme.stage(QStringLiteral("green")).hue() - QColor(Qt::green).hue()), 40);
    preferences.setAppearanceMode(0);
}

TEST(ThemeTest, ColorsFadeButNotFromOneSchemeToTheOther)
{
    Scene scene(R"(
Item {
    property bool picked: false
    property color plain: picked ? Theme.accent : Theme.label
    property color fading: plain
    ColorFade on fading { }
})");
    const auto lags = [&] { return scene.root()->property("fading") != scene.root()->property("plain"); };
    scene.root()->setProperty("picked", true);
    EXPECT_TRUE(lags());
    Preferences::shared().setAppearanceMode(2);
    EXPECT_FALSE(lags());
    Preferences::shared().setAppearanceMode(1);
    EXPECT_FALSE(lags());
    scene.root()->setProperty("picked", false);
    EXPECT_TRUE(lags());
    Preferences::shared().setAppearanceMode(0);
}

} // namespace kelmoth
