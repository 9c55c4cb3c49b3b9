// Shortcut text that a user or a file gives.

#include "Core/Device/ButtonAction.h"
#include "Core/Device/KeyboardShortcut.h"
#include "Fuzz/Check.h"

#include <algorithm>
#include <cstdint>
#include <string>

using namespace kelmoth;
using fuzz::check;

namespace {

bool isKnownUsage(std::uint8_t usage)
{
    return std::ranges::any_of(keyNames(), [&](auto name) { return keyToHIDCode(name) == usage; });
}

void checkText(const std::string &text)
{
    const auto shortcut = parseKeyboardShortcut(text);
    check(shortcut.modifier <= 0x0F, "only the four modifiers there are");
    check(shortcut.keyCode == 0 || isKnownUsage(shortcut.keyCode), "only keys that have a name");
    check(parseKeyboardShortcut(" \t" + text + "\t ") == shortcut, "space around the text means nothing");

    auto upper = text;
    for (char &c : upper) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    check(parseKeyboardShortcut(upper) == shortcut, "the letter case means nothing");

    const auto function = ButtonAction::keyPress(text).toButtonFunction();
    check(function == ButtonFunction{2, 2, shortcut.modifier, shortcut.keyCode},
          "the mouse is sent the same");

    const auto canonical = shortcutString(shortcut.modifier, shortcut.keyCode);
    check(canonical.has_value() == (shortcut.keyCode != 0), "a known key can be named");
    const auto back = ButtonAction(function);
    check(canonical ? back == ButtonAction::keyPress(*canonical) : back.which() == ButtonAction::Case::other,
          "the mouse gives the canonical text back");
}

void checkPair(std::uint8_t modifier, std::uint8_t usage)
{
    const auto text = shortcutString(modifier, usage);
    check(text.has_value() == (modifier <= 0x0F && isKnownUsage(usage)), "what can be named is named");
    if (text) {
        check(parseKeyboardShortcut(*text) == KeyboardShortcut{modifier, usage}, "the name says the same");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    checkText(std::string(data, data + size));
    if (size >= 2) {
        checkPair(data[0], data[1]);
    }
    return 0;
}
