#include "Core/Device/ButtonAction.h"
#include "Core/Services/L10n.h"
#include "Platform/Platform.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/Simulated/MemoryDefaults.h"

#include <QByteArray>
#include <gtest/gtest.h>

namespace kelmoth {
namespace {

TEST(L10n, UsesThePreferredLanguageElseTheSystems)
{
    Platform platform;
    fillQtPlatform(platform);
    platform.userDefaults = std::make_shared<MemoryDefaults>();
    Platform::setCurrent(platform);
    using Row = std::tuple<Int, const char *, bool>;
    for (const auto &[mode, locale, isPolish] :
         {Row{0, "pl_PL.UTF-8", true}, Row{7, "pl_PL.UTF-8", true}, Row{1, "de_DE.UTF-8", true},
          Row{2, "pl_PL.UTF-8", false}, Row{0, "de_DE.UTF-8", false}, Row{0, "C", false}}) {
        platform.userDefaults->setInteger("languageMode", mode);
        qputenv("LC_ALL", locale);
        EXPECT_EQ(L10n::languageCode(), isPolish ? "pl" : "en") << mode << locale;
        EXPECT_EQ(L10n::text("Quit"), isPolish ? "Zakończ" : "Quit") << mode << locale;
        EXPECT_EQ(actionName(ButtonAction::profileSwitch(-2)), isPolish ? "Profil -2" : "Profile -2");
        EXPECT_EQ(actionName(ButtonAction::macroPlay("%@")), isPolish ? "Makro: %@" : "Macro: %@");
    }
    EXPECT_EQ(L10n::formatted("%lld%%", "85"), "85%");
    EXPECT_EQ(L10n::formatted("%@", "100%% %@"), "100%% %@"); // what fills a format is none
    EXPECT_EQ(L10n::text("No such key"), "No such key");
    Platform::setCurrent({});
}

} // namespace
} // namespace kelmoth
