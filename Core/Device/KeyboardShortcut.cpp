#include "Core/Device/KeyboardShortcut.h"

#include "Core/Device/Lowercase.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace kelmoth {

namespace {

enum Modifier : std::uint8_t { control = 0x01, shift = 0x02, alt = 0x04, gui = 0x08 };
constexpr std::uint8_t allModifiers = control | shift | alt | gui;

struct Key {
    std::string_view name;
    std::uint8_t usage; ///< on the USB HID keyboard/keypad page
};

/// The canonical names in their fixed order.
constexpr std::array keys{
    Key{"a", 0x04},     Key{"b", 0x05},     Key{"c", 0x06},         Key{"d", 0x07},   Key{"e", 0x08},
    Key{"f", 0x09},     Key{"g", 0x0A},     Key{"h", 0x0B},         Key{"i", 0x0C},   Key{"j", 0x0D},
    Key{"k", 0x0E},     Key{"l", 0x0F},     Key{"m", 0x10},         Key{"n", 0x11},   Key{"o", 0x12},
    Key{"p", 0x13},     Key{"q", 0x14},     Key{"r", 0x15},         Key{"s", 0x16},   Key{"t", 0x17},
    Key{"u", 0x18},     Key{"v", 0x19},     Key{"w", 0x1A},         Key{"x", 0x1B},   Key{"y", 0x1C},
    Key{"z", 0x1D},     Key{"0", 0x27},     Key{"1", 0x1E},         Key{"2", 0x1F},   Key{"3", 0x20},
    Key{"4", 0x21},     Key{"5", 0x22},     Key{"6", 0x23},         Key{"7", 0x24},   Key{"8", 0x25},
    Key{"9", 0x26},     Key{"f1", 0x3A},    Key{"f2", 0x3B},        Key{"f3", 0x3C},  Key{"f4", 0x3D},
    Key{"f5", 0x3E},    Key{"f6", 0x3F},    Key{"f7", 0x40},        Key{"f8", 0x41},  Key{"f9", 0x42},
    Key{"f10", 0x43},   Key{"f11", 0x44},   Key{"f12", 0x45},       Key{"esc", 0x29}, Key{"tab", 0x2B},
    Key{"space", 0x2C}, Key{"enter", 0x28}, Key{"backspace", 0x2A}, Key{"up", 0x52},  Key{"down", 0x51},
    Key{"left", 0x50},  Key{"right", 0x4F},
};

/// Names that are understood but never produced.
constexpr std::array aliases{Key{"return", 0x28}, Key{"escape", 0x29}, Key{"delete", 0x2A}};

constexpr auto canonicalNames = [] {
    std::array<std::string_view, keys.size()> names{};
    std::ranges::transform(keys, names.begin(), &Key::name);
    return names;
}();

bool contains(const std::string &text, std::string_view word)
{
    return text.find(word) != std::string::npos;
}

/// Takes every non-overlapping occurrence out, left to right; what closes up is not looked at again.
void removeAll(std::string &text, std::string_view word)
{
    std::string kept;
    std::size_t from = 0;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, from)) {
        kept.append(text, from, at - from);
        from = at + word.size();
    }
    kept.append(text, from);
    text = std::move(kept);
}

/// If one of the words is in the text, takes its forms with a plus sign out and gives the modifier's bit.
std::uint8_t takeModifier(std::string &text, Modifier bit, std::initializer_list<std::string_view> words)
{
    if (std::ranges::none_of(words, [&](std::string_view word) { return contains(text, word); })) {
        return 0;
    }
    for (const auto word : words) {
        removeAll(text, std::string(word) + "+");
    }
    return bit;
}

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

} // namespace

KeyboardShortcut parseKeyboardShortcut(std::string_view text)
{
    auto rest = lowercased(text);
    KeyboardShortcut result;
    const auto add = [&](std::uint8_t bit) {
        result.modifier = static_cast<std::uint8_t>(result.modifier | bit);
    };
    add(takeModifier(rest, control, {"ctrl", "control"}));
    add(takeModifier(rest, shift, {"shift"}));
    add(takeModifier(rest, alt, {"alt", "option"}));
    add(takeModifier(rest, gui, {"cmd", "command", "win"}));
    result.keyCode = keyToHIDCode(trimmed(rest));
    return result;
}

std::optional<std::string> shortcutString(std::uint8_t modifier, std::uint8_t keyCode)
{
    if (modifier > allModifiers) {
        return std::nullopt;
    }
    const auto *key = std::ranges::find(keys, keyCode, &Key::usage);
    if (key == keys.end()) {
        return std::nullopt;
    }
    std::string text;
    if (modifier & control) {
        text += "ctrl+";
    }
    if (modifier & alt) {
        text += "alt+";
    }
    if (modifier & shift) {
        text += "shift+";
    }
    if (modifier & gui) {
        text += "cmd+";
    }
    return text.append(key->name);
}

std::uint8_t keyToHIDCode(std::string_view name)
{
    const auto lower = lowercased(name);
    for (const auto names : {std::span<const Key>(keys), std::span<const Key>(aliases)}) {
        const auto found = std::ranges::find(names, lower, &Key::name);
        if (found != names.end()) {
            return found->usage;
        }
    }
    return 0;
}

std::span<const std::string_view> keyNames()
{
    return canonicalNames;
}

} // namespace kelmoth
