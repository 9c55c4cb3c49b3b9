#include "Core/Device/ButtonAction.h"
#include "Core/Device/KeyboardShortcut.h"

#include <gmock/gmock.h>

#include <limits>

namespace kelmoth {
namespace {

using A = ButtonAction;

/// Those of a mouse fresh from the factory are compared where it is read.
TEST(ButtonAction, RoundTripsThroughBytes)
{
    const std::vector<std::pair<A, Data>> rows{
        {A::disabled(), {}},
        {A::keyPress("ctrl+alt+shift+c"), {0x02, 0x02, 0x07, 0x06}},
        {A::dpiChange(1), {0x06, 0x01, 0x07}},
        {A::dpiChange(2), {0x06, 0x02, 0x03, 0x01}},
        {A::dpiChange(6), {0x06, 0x02, 0x03, 0x05}},
        {A::profileSwitch(5), {0x07, 0x02, 0x03, 0x05}},
        {A::doubleClick(), {0x0B, 0x01, 0x01}},
        // What no case describes, or not quite, is kept as it is.
        {A::other({1, 1, 6, 0, 0, 0, 9}), {1, 1, 6, 0, 0, 0, 9}},
        {A::other({0x02, 0x02, 0x00, 0x00, 0, 0, 0}), {0x02, 0x02}},             // no key has usage 0
        {A::other({0x02, 0x02, 0x10, 0x04, 0, 0, 0}), {0x02, 0x02, 0x10, 0x04}}, // a fifth modifier
        {A::other({0x06, 0x02, 0x03, 0x00, 0, 0, 0}), {0x06, 0x02, 0x03, 0x00}},
        {A::other({0x07, 0x02, 0x03, 0x06, 0, 0, 0}), {0x07, 0x02, 0x03, 0x06}},
    };
    for (const auto &[action, bytes] : rows) {
        auto whole = bytes;
        whole.resize(7);
        EXPECT_THAT(action.toButtonFunction(), testing::ElementsAreArray(whole));
        EXPECT_TRUE(A(bytes) == action) << testing::PrintToString(bytes);
    }
}

TEST(ButtonAction, HandlesValuesAndBytesOutOfRange)
{
    using Limits = std::numeric_limits<Int>;
    for (const Int number : {Int{7}, Int{-1}, Limits::max(), Limits::min()}) {
        EXPECT_EQ(A(A::dpiChange(number).toButtonFunction()), A::dpiChange(0)) << number;
        EXPECT_EQ(A(A::profileSwitch(number).toButtonFunction()), A::profileSwitch(0)) << number;
    }
    EXPECT_EQ(A::macroPlay("Build").toButtonFunction(), ButtonFunction{});
    EXPECT_EQ(A::other(Data(9, 3)).toButtonFunction(), (ButtonFunction{3, 3, 3, 3, 3, 3, 3}));
    EXPECT_EQ(A(Data{0x20, 1, 2, 3, 4, 5, 6, 7, 8}), A::other({0x20, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(A(Data{0x01, 0x01, 0x05, 0xFF}), A::forward());
}

TEST(KeyboardShortcut, ReadsTextAsTheRulesSay)
{
    const std::vector<std::pair<std::string_view, KeyboardShortcut>> rows{
        {" Ctrl+Option+Ctrl+Return ", {0x05, 0x28}},
        {"\tcommand+win+A\t", {0x08, 0x04}},
        {"ctrl + a", {0x01, 0x00}},     // only the form with the plus sign is taken out
        {"shiftctrl+z", {0x03, 0x00}},  // "shift" stays in the key's name
        {"shctrl+ift+z", {0x03, 0x1D}}, // the text closes up around what was taken out
        {"control+altalt+up", {0x05, 0x00}},
        {"DELETE", {0x00, 0x2A}},
        {"", {0x00, 0x00}},
    };
    for (const auto &[text, shortcut] : rows) {
        EXPECT_EQ(parseKeyboardShortcut(text), shortcut) << text;
    }
}

TEST(KeyboardShortcut, EveryNamedPairRoundTrips)
{
    int named = 0;
    for (int pair = 0; pair <= 0xFFFF; ++pair) {
        const KeyboardShortcut shortcut{static_cast<std::uint8_t>(pair >> 8),
                                        static_cast<std::uint8_t>(pair)};
        if (const auto text = shortcutString(shortcut.modifier, shortcut.keyCode)) {
            ++named;
            EXPECT_EQ(parseKeyboardShortcut(*text), shortcut) << *text;
        }
    }
    EXPECT_EQ(named, 57 * 16);
    EXPECT_EQ(shortcutString(0x0F, 0x52), "ctrl+alt+shift+cmd+up");
}

} // namespace
} // namespace kelmoth
