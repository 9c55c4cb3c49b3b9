#include "Core/Device/ButtonAction.h"
#include "Core/Device/RazerDevice.h"
#include "Core/Services/L10n.h"
#include "Platform/Platform.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/Qt/ResourceBundle.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <memory>
#include <vector>

namespace kelmoth {
namespace {

/// Preferences, a bundle and a system language of the test's choosing.
class L10nTest : public testing::Test {
protected:
    L10nTest()
    {
        Platform platform;
        fillQtPlatform(platform);
        Platform::setCurrent(std::move(platform));
    }
    ~L10nTest() override
    {
        speak("C.UTF-8");
        Platform::setCurrent({});
    }
    /// Each time in a home of its own: a file that changes twice within a moment may pass for unchanged.
    void store(const QByteArray &languageMode)
    {
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", m_home->path().toUtf8());
        const QDir home(m_home->path());
        ASSERT_TRUE(home.mkdir(QStringLiteral("com.kelmoth.app")));
        QFile file(home.filePath(QStringLiteral("com.kelmoth.app/defaults.ini")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(languageMode.isEmpty() ? QByteArray() : "[General]\nlanguageMode=" + languageMode + "\n");
        file.close();
        Platform platform = Platform::current();
        platform.userDefaults = settingsUserDefaults();
        Platform::setCurrent(std::move(platform));
    }
    static void speak(const char *locale) { qputenv("LC_ALL", locale); }

private:
    std::unique_ptr<QTemporaryDir> m_home;
};

TEST_F(L10nTest, FollowsThePreferenceThenTheSystem)
{
    struct Row {
        QByteArray mode;
        const char *locale;
        std::string code;
    };
    const std::vector<Row> rows{
        {"", "pl_PL.UTF-8", "pl"},
        {"0", "pl_PL.UTF-8", "pl"},
        {"7", "pl_PL.UTF-8", "pl"},
        {"1", "de_DE.UTF-8", "pl"},
        {"2", "pl_PL.UTF-8", "en"},
        {"", "de_DE.UTF-8", "en"},
        {"", "C", "en"},
        {"polski", "en_GB.UTF-8", "en"},
        {"1.5", "C", "en"},
    };
    for (const auto &row : rows) {
        store(row.mode);
        speak(row.locale);
        EXPECT_EQ(L10n::languageCode(), row.code) << row.mode.toStdString() << " " << row.locale;
        EXPECT_EQ(L10n::text("Quit"), row.code == "pl" ? "Zakończ" : "Quit");
    }
}

TEST_F(L10nTest, FillsFormatsAndNamesInTheChosenLanguage)
{
    store("1");
    EXPECT_EQ(actionName(ButtonAction::profileSwitch(3)), "Profil 3");
    EXPECT_EQ(actionName(ButtonAction::macroPlay("X")), "Makro: X");
    EXPECT_EQ(actionName(ButtonAction::macroPlay("100%% %@")), "Makro: 100%% %@"); // a name is no format
    EXPECT_EQ(L10n::formatted("%lld%%", "85"), "85%");
    EXPECT_EQ(RazerDevice{}.name(), "Nieznane urządzenie Razer");
    EXPECT_EQ(L10n::text("No such key"), "No such key");
    EXPECT_EQ(Platform::current().mainBundle->identifier(), "com.kelmoth.app");
}

TEST_F(L10nTest, WithoutAFolderOfTheLanguageTheMainBundleSpeaks)
{
    QTemporaryDir directory;
    Platform platform = Platform::current();
    platform.mainBundle =
        std::make_shared<ResourceBundle>(QStringLiteral("id"), QStringLiteral("1"), directory.path());
    Platform::setCurrent(std::move(platform));
    store("1");
    EXPECT_EQ(L10n::languageCode(), "pl");
    EXPECT_EQ(L10n::resourceBundle(), Platform::current().mainBundle);
    EXPECT_EQ(L10n::text("Quit"), "Quit");

    // A folder whose table is rubbish, or missing, has no texts; it is opened all the same.
    QDir(directory.path()).mkpath(QStringLiteral("pl.lproj"));
    QFile table(directory.filePath(QStringLiteral("pl.lproj/Localizable.qm")));
    ASSERT_TRUE(table.open(QIODevice::WriteOnly));
    table.write("rubbish");
    table.close();
    EXPECT_NE(L10n::resourceBundle(), Platform::current().mainBundle);
    EXPECT_EQ(L10n::text("Quit"), "Quit");
}

} // namespace
} // namespace kelmoth
