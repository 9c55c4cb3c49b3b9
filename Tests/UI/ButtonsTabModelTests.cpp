#include "Tests/UI/PanelFixture.h"

namespace kelmoth {

constexpr int back = static_cast<int>(MouseButton::back);
constexpr int forward = static_cast<int>(MouseButton::forward);
// Rows of the actions.
constexpr int disabled = 8;
constexpr int dpiCycle = 9;
constexpr int profileSwitch = 10;
constexpr int keyboardKey = 12;

class ButtonsTabTest : public TabTest<ContentModel::buttons> {
protected:
    ButtonsTabModel &tab() { return *panel->buttonsTab(); }
    ButtonAction mapping(MouseButton button) const
    {
        return manager->deviceState().buttonMappings.at(button);
    }
};

TEST_F(ButtonsTabTest, ListsTheModelsButtonsWithTheirActions)
{
    const std::tuple<std::vector<std::string>, int, int> rows[]{
        {{}, 5, 0},
        {{"basilisk-v3-x-hyperspeed"}, 6, 13},
        {{"basilisk-v3"}, 11, 14},
        {{"basilisk-v3-x-hyperspeed", "basilisk-v3:bluetooth"}, 6, 13},
    };
    for (const auto &[models, buttons, actions] : rows) {
        open(models);
        EXPECT_EQ(tab().buttons()->count(), buttons);
        EXPECT_EQ(tab().actions()->count(), actions);
    }
    mouse().unplug();
    finishAll();
    EXPECT_EQ(tab().actions()->count(), 14);
    // Only six of these are known from the mouse before.
    EXPECT_THAT(texts(tab().buttons(), "actionName"),
                ElementsAre("Left Click", "Right Click", "Middle Click", "Forward", "Back", "DPI Cycle",
                            "Wheel Mode Toggle", "Scroll Up", "Scroll Down", "Hypershift", "Profile Switch"));
    EXPECT_EQ(texts(tab().buttons(), "selectedAction"),
              (std::vector<std::string>{"0", "1", "2", "3", "4", "9", "13", "5", "6", "11", "10"}));
    EXPECT_EQ(tab().pickerKeys().size(), 56);
    EXPECT_FALSE(tab().pickerKeys().contains(QStringLiteral("backspace")));
}

TEST_F(ButtonsTabTest, OneRowAtATimeIsOpen)
{
    open({"basilisk-v3"});
    tab().toggleButton(back);
    EXPECT_THAT(rowsThatAre(tab().buttons(), "expanded"), ElementsAre(back));
    tab().toggleButton(forward);
    EXPECT_THAT(rowsThatAre(tab().buttons(), "expanded"), ElementsAre(forward));
    tab().toggleButton(99);
    EXPECT_THAT(rowsThatAre(tab().buttons(), "expanded"), IsEmpty());

    tab().toggleButton(back);
    tab().handleActionSelection(back, keyboardKey);
    EXPECT_THAT(rowsThatAre(tab().buttons(), "showsKeyInput"), ElementsAre(back));
    tab().handleActionSelection(back, profileSwitch);
    EXPECT_THAT(rowsThatAre(tab().buttons(), "showsKeyInput"), IsEmpty());
    EXPECT_THAT(rowsThatAre(tab().buttons(), "showsProfilePicker"), ElementsAre(back));
    tab().toggleModifier(2);
    EXPECT_FALSE(tab().isApplying()) << "nothing is picked yet";

    panel->selectTab(ContentModel::dpi);
    panel->selectTab(ContentModel::buttons);
    EXPECT_THAT(rowsThatAre(tab().buttons(), "expanded"), IsEmpty());
    EXPECT_THAT(rowsThatAre(tab().buttons(), "showsProfilePicker"), IsEmpty());
    EXPECT_THAT(rowsThatAre(tab().modifiers(), "selected"), IsEmpty());
}

TEST_F(ButtonsTabTest, WritesAFixedActionAKeyAndAProfile)
{
    open({"basilisk-v3"});
    tab().toggleButton(back);
    tab().handleActionSelection(back, dpiCycle);
    EXPECT_EQ(tab().applyingButton(), MouseButton::back);
    EXPECT_EQ(tab().expandedButton(), std::nullopt);
    finishWrite(tab());
    EXPECT_EQ(mapping(MouseButton::back), ButtonAction::dpiChange(0));

    tab().handleActionSelection(back, keyboardKey);
    for (const auto *key : {"backspace", "ctrl+c", ""}) {
        tab().commitPickedKey(QString::fromLatin1(key));
        EXPECT_FALSE(tab().isApplying()) << key;
    }
    tab().toggleModifier(3);
    tab().toggleModifier(0);
    tab().toggleModifier(4);
    EXPECT_THAT(rowsThatAre(tab().modifiers(), "selected"), ElementsAre(0, 3));
    tab().commitPickedKey(QStringLiteral("x"));
    EXPECT_THAT(rowsThatAre(tab().buttons(), "showsKeyInput"), IsEmpty()) << "before the mouse has taken it";
    finishWrite(tab());
    EXPECT_EQ(mapping(MouseButton::back), ButtonAction::keyPress("ctrl+cmd+x"));
    EXPECT_THAT(rowsThatAre(tab().modifiers(), "selected"), IsEmpty());
    tab().commitPickedKey(QStringLiteral("y"));
    EXPECT_FALSE(tab().isApplying()) << "the key input is closed";

    tab().handleActionSelection(forward, profileSwitch);
    tab().pickProfile(6);
    EXPECT_FALSE(tab().isApplying());
    tab().pickProfile(3);
    finishWrite(tab());
    EXPECT_EQ(mapping(MouseButton::forward), ButtonAction::profileSwitch(3));
    EXPECT_EQ(texts(tab().buttons(), "actionName")[forward], "Profile 3");
    EXPECT_EQ(texts(tab().buttons(), "selectedAction")[forward], std::to_string(profileSwitch));
    preferences.chooseLanguage(1);
    EXPECT_EQ(texts(tab().buttons(), "actionName")[forward], "Profil 3");
    EXPECT_THAT(takeLines(), IsEmpty());
}

TEST_F(ButtonsTabTest, APickDuringAWriteIsDropped)
{
    open({"basilisk-v3"});
    refuse(0x02, 0x0C);
    time->hold();
    tab().handleActionSelection(back, disabled);
    tab().handleActionSelection(forward, disabled);
    EXPECT_FALSE(tab().isEnabled());
    EXPECT_EQ(tab().applyingButton(), MouseButton::back);
    time->release();
    finishWrite(tab());
    EXPECT_TRUE(tab().isEnabled());
    EXPECT_EQ(mapping(MouseButton::back), ButtonAction::back());
    EXPECT_EQ(mapping(MouseButton::forward), ButtonAction::forward());
    EXPECT_THAT(takeLines(), ElementsAre("⚠️ Failed to apply button mapping to device"));
    EXPECT_THAT(messages, ElementsAre("Failed to apply button mapping"));
}

} // namespace kelmoth
