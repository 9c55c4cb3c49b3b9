#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kelmoth {

/// A key with modifiers as the USB HID keyboard report holds it.
struct KeyboardShortcut {
    std::uint8_t modifier = 0; ///< bit 0 left control, bit 1 left shift, bit 2 left alt, bit 3 left GUI
    std::uint8_t keyCode = 0;  ///< usage on the keyboard/keypad page; 0 when there is no such key

    bool operator==(const KeyboardShortcut &) const = default;
};

/// Reads shortcut text such as "ctrl+shift+f5", in any letter case. Never fails: modifiers are recognised
/// wherever their names stand, only the forms with a plus sign are taken out, and what is left is the key
/// name, trimmed of spaces and tabs; a key name that is not known gives usage 0. UTF-8.
KeyboardShortcut parseKeyboardShortcut(std::string_view text);

/// The canonical text of a shortcut: lower case, modifiers in the order ctrl, alt, shift, cmd. None when the
/// modifier byte is above 15 or no key name has this usage.
std::optional<std::string> shortcutString(std::uint8_t modifier, std::uint8_t keyCode);

/// The usage of one key name, in any letter case; 0 for a name that is not known.
std::uint8_t keyToHIDCode(std::string_view name);

/// The 57 canonical key names in their fixed order: a to z, 0 to 9, f1 to f12, then the named keys.
/// The aliases "return", "escape" and "delete" are understood but not listed.
std::span<const std::string_view> keyNames();

} // namespace kelmoth
