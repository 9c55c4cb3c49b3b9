#include "Core/Device/ButtonAction.h"
#include "Core/Services/L10n.h"
#include "Platform/Platform.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/Qt/ResourceBundle.h"
#include "Platform/Simulated/MemoryDefaults.h"

#include <QDir>
#include <QTemporaryDir>
#include <gmock/gmock.h>

namespace kelmoth {
namespace {

/// The program's texts, with a preference and a system language of the test's choosing.
class L10nTest : public testing::Test {
protected:
    L10nTest() { fillQtPlatform(platform); }
    ~L10nTest() override { Platform::setCurrent({}); }
    void choose(Int languageMode, const char *locale)
    {
        platform.userDefaults = std::make_shared<MemoryDefaults>();
        platform.userDefaults->setInteger("languageMode", languageMode);
        qputenv("LC_ALL", locale);
        Platform::setCurrent(platform);
    }

    Platform platform;
};

TEST_F(L10nTest, SpeaksThePreferredLanguageElseTheSystems)
{
    using Row = std::tuple<Int, const char *, bool>;
    for (const auto &[mode, locale, isPolish] :
         {Row{0, "pl_PL.UTF-8", true}, Row{7, "pl_PL.UTF-8", true}, Row{1, "de_DE.UTF-8", true},
          Row{2, "pl_PL.UTF-8", false}, Row{0, "de_DE.UTF-8", false}, Row{0, "C", false}}) {
        choose(mode, locale);
        EXPECT_EQ(L10n::languageCode(), isPolish ? "pl" : "en") << mode << locale;
        EXPECT_EQ(L10n::text("Quit"), isPolish ? "Zakończ" : "Quit") << mode << locale;
        EXPECT_EQ(actionName(ButtonAction::profileSwitch(-2)), isPolish ? "Profil -2" : "Profile -2");
        EXPECT_EQ(actionName(ButtonAction::macroPlay("%@")), isPolish ? "Makro: %@" : "Macro: %@");
    }
    EXPECT_EQ(L10n::formatted("%lld%%", "85"), "85%");
    EXPECT_EQ(L10n::formatted("%@", "100%% %@"), "100%% %@"); // what fills a format is none
    EXPECT_EQ(L10n::text("No such key"), "No such key");
}

TEST_F(L10nTest, SpeaksEnglishWithoutATableOfTheLanguage)
{
    const QTemporaryDir directory;
    platform.mainBundle = std::make_shared<ResourceBundle>(QString(), QString(), directory.path());
    choose(1, "C");
    EXPECT_EQ(L10n::text("Quit"), "Quit");
    QDir(directory.path()).mkpath(QStringLiteral("pl.lproj")); // a folder without its table
    EXPECT_EQ(L10n::text("Quit"), "Quit");
}

} // namespace
} // namespace kelmoth
