#include "Tests/UI/PanelFixture.h"

namespace kelmoth {

using enum LoginItemStatus;

const std::string move = "Move Kelmoth to the Applications folder to launch it at login.";
const std::string allow = "Allow Kelmoth under Login Items in System Settings.";

class SettingsTabTest : public TabTest<ContentModel::settings> {
protected:
    SettingsTabModel &tab() { return *panel->settingsTab(); }
};

TEST_F(SettingsTabTest, LiftOffFollowsTheMouse)
{
    open({"basilisk-v3"});
    const std::vector<std::string> labels{"Low (1 mm)", "Medium (2 mm)", "High (3 mm)", "Not set"};
    for (const int level : {0, 1, 2, 5}) {
        change(mouse(), [&](auto &state) { state.liftOff = static_cast<std::uint8_t>(level); });
        QCoro::waitFor(manager->refreshFromDevice(true));
        EXPECT_EQ(tab().liftOffLabel().toStdString(), labels[static_cast<std::size_t>(std::min(level, 3))]);
        const auto expected = level < 3 ? std::vector{level} : std::vector<int>{};
        EXPECT_EQ(rowsThatAre(tab().liftOffChoices(), "selected"), expected);
    }

    settle();
    time->hold();
    tab().pickLiftOff(0);
    EXPECT_FALSE(tab().liftOffEnabled());
    tab().pickLiftOff(1);
    time->release();
    finishWrite(tab());
    EXPECT_TRUE(tab().liftOffEnabled());
    EXPECT_EQ(tab().liftOffLabel(), QStringLiteral("Low (1 mm)"));
    EXPECT_THAT(takeCommands(), ElementsAre(Code{0x0B, 0x03}, Code{0x0B, 0x0B}, Code{0x0B, 0x8B}));

    bool wasEnabled = true;
    QObject::connect(&tab(), &SettingsTabModel::liftOffEnabledChanged, &tab(),
                     [&] { wasEnabled = manager->isSyncing() && tab().liftOffEnabled(); });
    QCoro::waitFor(manager->refreshFromDevice(false));
    EXPECT_FALSE(wasEnabled);

    for (const std::vector<std::string> &others :
         {std::vector<std::string>{}, {"basilisk-v3:bluetooth"}, {"stranger"}}) {
        open(others);
        EXPECT_FALSE(tab().liftOffEnabled());
        EXPECT_EQ(tab().liftOffLabel(), QStringLiteral("Not set"));
    }
}

TEST_F(SettingsTabTest, TheSwitchShowsTheSystemsStatus)
{
    const std::tuple<LoginItemStatus, bool, bool, std::string, bool> rows[]{
        {notRegistered, true, false, "", false},     {enabled, true, true, "", false},
        {requiresApproval, true, true, allow, true}, {notFound, true, false, "", false},
        {enabled, false, true, move, false},         {requiresApproval, false, true, allow, true},
    };
    open({});
    for (const auto &[status, isInApplications, isOn, message, needsApproval] : rows) {
        loginService->now = status;
        loginService->isInApplications = isInApplications;
        panel->panelShown();
        EXPECT_EQ(tab().launchAtLogin(), isOn) << int(status);
        EXPECT_EQ(tab().loginMessage().toStdString(), message);
        EXPECT_EQ(tab().loginNeedsApproval(), needsApproval);
    }
    EXPECT_THAT(loginService->takeCalls(), IsEmpty());
    tab().flipLaunchAtLogin(false);
    EXPECT_TRUE(tab().launchAtLogin()) << "not yet the user's";
    EXPECT_THAT(loginService->takeCalls(), IsEmpty());
}

TEST_F(SettingsTabTest, ASwitchRegistersOrReverts)
{
    using Texts = std::vector<std::string>;
    const std::string failed = "Launch at Login could not be changed: disk full";
    const std::string error = "❌ Launch at Login error: ";
    // What the system does, how the switch then stands and what it says, what was asked, and what is logged.
    const std::tuple<bool, LoginItemStatus, std::optional<std::string>, bool, std::string, Texts, Texts>
        rows[]{
            {true, enabled, {}, true, "", {"register"}, {}},
            {true, requiresApproval, {}, true, allow, {"register", "open settings"}, {}},
            {true, enabled, "disk full", false, failed, {"register"}, {error + "disk full"}},
            {false, enabled, {}, false, move, {}, {error + move}},
        };
    for (const auto &[isInApplications, after, failure, isOn, message, calls, lines] : rows) {
        loginService->now = notRegistered;
        loginService->isInApplications = isInApplications;
        loginService->afterRegistering = after;
        loginService->registerFailure = failure;
        open({});
        tab().flipLaunchAtLogin(true);
        EXPECT_EQ(tab().launchAtLogin(), isOn);
        EXPECT_EQ(tab().loginMessage().toStdString(), message);
        EXPECT_EQ(loginService->takeCalls(), calls);
        EXPECT_EQ(takeLines(), lines);
        QCoreApplication::processEvents();
    }
    const QSignalSpy changes(&tab(), &SettingsTabModel::loginMessageChanged);
    preferences.chooseLanguage(1);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_NE(tab().loginMessage().toStdString(), move);

    // Off again, after a failure: the switch listens.
    loginService->now = enabled;
    tab().flipLaunchAtLogin(false);
    EXPECT_THAT(loginService->takeCalls(), ElementsAre("unregister"));
    EXPECT_FALSE(tab().launchAtLogin());

    // A system that takes its time is asked for nothing else meanwhile, whatever becomes of the page.
    loginService->isInApplications = true;
    loginService->isSlow = true;
    tab().flipLaunchAtLogin(true);
    EXPECT_TRUE(tab().launchAtLogin()) << "at once";
    panel->panelShown();
    QCoreApplication::processEvents();
    tab().flipLaunchAtLogin(false);
    EXPECT_THAT(loginService->takeCalls(), ElementsAre("register"));
    tab().reset();
    loginService->answerNow();
    EXPECT_TRUE(tab().launchAtLogin());
}

TEST_F(SettingsTabTest, ChoicesAreStoredAndShown)
{
    open({});
    const QSignalSpy languageChanges(&preferences, &Preferences::kelmothLanguageDidChange);
    tab().pickLanguage(2);
    tab().pickLanguage(3);
    EXPECT_EQ(languageChanges.size(), 0);
    tab().pickLanguage(1);
    EXPECT_EQ(languageChanges.size(), 1);
    EXPECT_THAT(rowsThatAre(tab().languageChoices(), "selected"), ElementsAre(1));
    tab().pickAppearance(2);
    EXPECT_TRUE(appearance.isDark());
    EXPECT_THAT(rowsThatAre(tab().appearanceChoices(), "selected"), ElementsAre(2));
}

} // namespace kelmoth
