// Shortcut text that a user or a file gives.

#include "Core/Device/ButtonAction.h"
#include "Core/Device/KeyboardShortcut.h"
#include "Fuzz/Check.h"

#include <cctype>

using namespace kelmoth;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text(data, data + size);
    const auto shortcut = parseKeyboardShortcut(text);
    check(shortcut.modifier <= 0x0F, "only the four modifiers there are");

    std::string shouted = " \t" + text + "\t ";
    for (char &c : shouted) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    check(parseKeyboardShortcut(shouted) == shortcut, "letter case and space around the text mean nothing");

    const auto canonical = shortcutString(shortcut.modifier, shortcut.keyCode);
    check(canonical.has_value() == (shortcut.keyCode != 0), "only a key that can be named comes of a text");
    const auto function = ButtonAction::keyPress(text).toButtonFunction();
    check(function == ButtonFunction{2, 2, shortcut.modifier, shortcut.keyCode},
          "the mouse is sent the same");
    check(!canonical || ButtonAction(function) == ButtonAction::keyPress(*canonical), "and gives it back");
    return 0;
}
