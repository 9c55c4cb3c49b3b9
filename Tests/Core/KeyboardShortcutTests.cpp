#include "Core/Device/KeyboardShortcut.h"

#include <gmock/gmock.h>

#include <vector>

namespace kelmoth {
namespace {

TEST(KeyboardShortcut, ReadsTextAsTheRulesSay)
{
    struct Row {
        std::string_view text;
        KeyboardShortcut shortcut;
    };
    const std::vector<Row> rows{
        {" Ctrl+Option+Return ", {0x05, 0x28}},
        {"\tcontrol+A\t", {0x01, 0x04}},
        {"command+win+a", {0x08, 0x04}},
        {"ctrl + a", {0x01, 0x00}}, // only the form with the plus sign is taken out
        {"ctrl", {0x01, 0x00}},
        {"shiftctrl+z", {0x03, 0x00}},  // "shift" stays in the key's name
        {"shctrl+ift+z", {0x03, 0x1D}}, // the text closes up around what was taken out
        {"window", {0x08, 0x00}},
        {"altalt+up", {0x04, 0x00}},
        {"Escape", {0x00, 0x29}},
        {"DELETE", {0x00, 0x2A}},
        {"f12", {0x00, 0x45}},
        {"f13", {0x00, 0x00}},
        {"0", {0x00, 0x27}},
        {"", {0x00, 0x00}},
        {"\xFF\xFE+", {0x00, 0x00}},
    };
    for (const auto &[text, shortcut] : rows) {
        EXPECT_EQ(parseKeyboardShortcut(text), shortcut) << text;
    }
}

TEST(KeyboardShortcut, EveryKeyComesBackWithEveryModifier)
{
    ASSERT_EQ(keyNames().size(), 57U);
    for (const auto name : keyNames()) {
        for (std::uint8_t modifier = 0; modifier <= 15; ++modifier) {
            const auto text = shortcutString(modifier, keyToHIDCode(name));
            ASSERT_TRUE(text) << name;
            EXPECT_TRUE(text->ends_with(name)) << *text;
            EXPECT_EQ(parseKeyboardShortcut(*text), (KeyboardShortcut{modifier, keyToHIDCode(name)}));
        }
    }
    EXPECT_EQ(shortcutString(0x0F, 0x52), "ctrl+alt+shift+cmd+up");
    EXPECT_EQ(shortcutString(0x10, 0x52), std::nullopt);
    EXPECT_EQ(shortcutString(0x00, 0x00), std::nullopt);
    EXPECT_EQ(shortcutString(0x00, 0x2D), std::nullopt);
}

} // namespace
} // namespace kelmoth
