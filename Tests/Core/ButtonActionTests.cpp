#include "Core/Device/ButtonAction.h"

#include <gmock/gmock.h>

#include <ostream>

namespace kelmoth {

void PrintTo(const ButtonAction &action, std::ostream *stream)
{
    *stream << storedName(action.which()) << " " << testing::PrintToString(action.value());
}

namespace {

struct Pair {
    ButtonAction action;
    ButtonFunction bytes;
};

TEST(ButtonAction, EncodesToTheBytesOfTheWire)
{
    const std::vector<Pair> pairs{
        {ButtonAction::disabled(), {}},
        {ButtonAction::leftClick(), {0x01, 0x01, 0x01}},
        {ButtonAction::rightClick(), {0x01, 0x01, 0x02}},
        {ButtonAction::middleClick(), {0x01, 0x01, 0x03}},
        {ButtonAction::back(), {0x01, 0x01, 0x04}},
        {ButtonAction::forward(), {0x01, 0x01, 0x05}},
        {ButtonAction::scrollUp(), {0x01, 0x01, 0x09}},
        {ButtonAction::scrollDown(), {0x01, 0x01, 0x0A}},
        {ButtonAction::keyPress("ctrl+alt+shift+c"), {0x02, 0x02, 0x07, 0x06}},
        {ButtonAction::dpiChange(0), {0x06, 0x01, 0x06}},
        {ButtonAction::dpiChange(1), {0x06, 0x01, 0x07}},
        {ButtonAction::dpiChange(2), {0x06, 0x02, 0x03, 0x01}},
        {ButtonAction::dpiChange(6), {0x06, 0x02, 0x03, 0x05}},
        {ButtonAction::profileSwitch(0), {0x07, 0x01, 0x04}},
        {ButtonAction::profileSwitch(1), {0x07, 0x02, 0x03, 0x01}},
        {ButtonAction::profileSwitch(5), {0x07, 0x02, 0x03, 0x05}},
        {ButtonAction::doubleClick(), {0x0B, 0x01, 0x01}},
        {ButtonAction::hypershift(), {0x0C, 0x01, 0x01}},
        {ButtonAction::scrollModeToggle(), {0x12, 0x01, 0x01}},
        {ButtonAction::other({1, 1, 6, 0, 0, 0, 9}), {1, 1, 6, 0, 0, 0, 9}},
    };
    for (const auto &[action, bytes] : pairs) {
        EXPECT_EQ(action.toButtonFunction(), bytes) << storedName(action.which());
        EXPECT_EQ(ButtonAction(bytes), action) << storedName(action.which());
    }
}

TEST(ButtonAction, EncodesValuesThatDoNotComeBackAsTheNearestFunction)
{
    constexpr Int huge = std::numeric_limits<Int>::max();
    constexpr Int tiny = std::numeric_limits<Int>::min();
    const ButtonFunction cycleDPI{0x06, 0x01, 0x06};
    const ButtonFunction cycleProfile{0x07, 0x01, 0x04};
    for (const Int number : {Int{7}, Int{-1}, huge, tiny}) {
        EXPECT_EQ(ButtonAction::dpiChange(number).toButtonFunction(), cycleDPI) << number;
        EXPECT_EQ(ButtonAction::profileSwitch(number).toButtonFunction(), cycleProfile) << number;
    }
    EXPECT_EQ(ButtonAction::profileSwitch(6).toButtonFunction(), cycleProfile);
    EXPECT_EQ(ButtonAction::macroPlay("Build").toButtonFunction(), ButtonFunction{});
    EXPECT_EQ(ButtonAction::other({5, 6}).toButtonFunction(), (ButtonFunction{5, 6}));
    EXPECT_EQ(ButtonAction::other(Data(9, 3)).toButtonFunction(), (ButtonFunction{3, 3, 3, 3, 3, 3, 3}));
}

TEST(ButtonAction, DecodesWhatItDoesNotKnowAsItsBytes)
{
    struct Row {
        Data bytes;
        ButtonAction action;
    };
    const auto other = [](Data bytes) {
        bytes.resize(7);
        return ButtonAction::other(bytes);
    };
    const std::vector<Row> rows{
        {{}, ButtonAction::disabled()},
        {{0x00, 0x55, 0x55}, ButtonAction::disabled()},
        {{0x01, 0x01, 0x06}, other({0x01, 0x01, 0x06})},
        {{0x01, 0x02, 0x01}, other({0x01, 0x02, 0x01})},
        {{0x01, 0x01, 0x05, 0xFF}, ButtonAction::forward()},
        {{0x02, 0x02, 0x00, 0x00}, other({0x02, 0x02})},             // no key has usage 0
        {{0x02, 0x02, 0x10, 0x04}, other({0x02, 0x02, 0x10, 0x04})}, // modifier beyond the four
        {{0x02, 0x01, 0x00, 0x04}, other({0x02, 0x01, 0x00, 0x04})},
        {{0x02, 0x02, 0x08, 0x29}, ButtonAction::keyPress("cmd+esc")},
        {{0x06, 0x02, 0x03, 0x00}, other({0x06, 0x02, 0x03, 0x00})},
        {{0x06, 0x02, 0x03, 0x06}, other({0x06, 0x02, 0x03, 0x06})},
        {{0x07, 0x02, 0x03, 0x06}, other({0x07, 0x02, 0x03, 0x06})},
        {{0x12, 0x01, 0x02}, other({0x12, 0x01, 0x02})},
        {{0x20, 1, 2, 3, 4, 5, 6, 7, 8, 9}, other({0x20, 1, 2, 3, 4, 5, 6})},
    };
    for (const auto &[bytes, action] : rows) {
        EXPECT_EQ(ButtonAction(bytes), action) << testing::PrintToString(bytes);
    }
}

TEST(ButtonAction, EveryOfferedActionSurvivesTheMouse)
{
    for (const auto &choice : buttonActionChoices(true)) {
        if (choice.action == ButtonAction::keyPress("")) {
            continue; // has no key yet
        }
        EXPECT_EQ(ButtonAction(choice.action.toButtonFunction()), choice.action) << choice.label;
        EXPECT_EQ(actionName(choice.action), choice.label);
    }
    EXPECT_EQ(ButtonAction(ButtonAction::keyPress(" Shift+CTRL+F5").toButtonFunction()),
              ButtonAction::keyPress("ctrl+shift+f5"));
    EXPECT_EQ(buttonActionChoices(false).size() + 1, buttonActionChoices(true).size());
    EXPECT_EQ(buttonActionChoices(true).back().action, ButtonAction::scrollModeToggle());
}

TEST(ButtonAction, IsNamedByItsValueWhereThatSaysMore)
{
    EXPECT_EQ(actionName(ButtonAction::dpiChange(4)), "DPI Cycle");
    EXPECT_EQ(actionName(ButtonAction::profileSwitch(-2)), "Profile -2");
    EXPECT_EQ(actionName(ButtonAction::keyPress("ctrl+c")), "ctrl+c");
    EXPECT_EQ(actionName(ButtonAction::macroPlay("%@ 100%")), "Macro: %@ 100%");
    EXPECT_EQ(actionName(ButtonAction::other({1})), "Custom function");
}

} // namespace
} // namespace kelmoth
