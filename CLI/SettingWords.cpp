#include "CLI/SettingWords.h"

#include "Core/Device/DeviceDefaults.h"
#include "Core/Device/KeyboardShortcut.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace kelmoth {

namespace {

using Case = ButtonAction::Case;
using ValueType = ButtonAction::ValueType;

constexpr Int highestDPIChange = 6;

std::optional<Data> bytesFromHex(std::string_view text)
{
    if (text.size() % 2 != 0) {
        return std::nullopt;
    }
    Data bytes(text.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char *begin = text.data() + 2 * i;
        const auto result = std::from_chars(begin, begin + 2, bytes[i], 16);
        if (result.ec != std::errc{} || result.ptr != begin + 2) {
            return std::nullopt;
        }
    }
    return bytes;
}

std::string hexOf(std::span<const std::uint8_t> bytes)
{
    std::string text;
    for (const auto byte : bytes) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X", unsigned{byte});
        text += digits.data();
    }
    return text;
}

bool isOffered(Case which, const RazerDevice &device)
{
    const auto choices = buttonActionChoices(device.capabilities().hasHyperScroll);
    return std::ranges::any_of(choices, [which](const auto &c) { return c.action.which() == which; });
}

/// An action that carries a number, 0 when none is given.
std::optional<ButtonAction> numberedAction(Case which, const std::optional<std::string> &value,
                                           std::string *failure)
{
    const Int highest = which == Case::dpiChange ? highestDPIChange : highestProfile;
    const auto number = value ? wholeNumber(*value) : std::optional<Int>(0);
    if (!number || *number < 0 || *number > highest) {
        *failure = std::string(storedName(which)) + " takes a number from 0 to " + std::to_string(highest);
        return std::nullopt;
    }
    return ButtonAction::make(which, *number);
}

std::optional<ButtonAction> keyAction(const std::optional<std::string> &value, std::string *failure)
{
    const auto shortcut = parseKeyboardShortcut(value.value_or(""));
    auto text = shortcutString(shortcut.modifier, shortcut.keyCode);
    if (!text) {
        *failure = "keyPress takes a key, with ctrl+, alt+, shift+ or cmd+ before it; the keys are " +
                   joined(keyNames());
        return std::nullopt;
    }
    return ButtonAction::make(ButtonAction::Case::keyPress, *std::move(text));
}

std::optional<ButtonAction> rawAction(const std::optional<std::string> &value, std::string *failure)
{
    const auto bytes = bytesFromHex(value.value_or(""));
    if (!bytes || bytes->size() != ButtonFunction{}.size()) {
        *failure = "other takes the seven bytes of a function as 14 hexadecimal digits";
        return std::nullopt;
    }
    return canonical(ButtonAction::other(*bytes));
}

} // namespace

std::vector<MouseButton> buttonsOf(const RazerDevice &device)
{
    std::vector<MouseButton> buttons;
    for (const auto &[button, action] : defaultButtonMappings(device)) {
        buttons.push_back(button);
    }
    return buttons;
}

bool hasColor(RGBEffect effect)
{
    return effect == RGBEffect::staticColor || effect == RGBEffect::breathing ||
           effect == RGBEffect::reactive;
}

std::string hexText(RGBColor color)
{
    return '#' + hexOf(std::array{color.r, color.g, color.b});
}

std::optional<RGBColor> colorFromText(std::string_view text)
{
    const auto bytes = bytesFromHex(text.starts_with('#') ? text.substr(1) : text);
    if (!bytes || bytes->size() != 3) {
        return std::nullopt;
    }
    return RGBColor{(*bytes)[0], (*bytes)[1], (*bytes)[2]};
}

std::string lightText(const RGBSetting &setting)
{
    std::array<char, 32> percent{}; // a stored brightness may be any number
    std::snprintf(percent.data(), percent.size(), "%.6g %%", std::round(setting.brightness * 100));
    return std::string(rawValue(setting.effect)) +
           (hasColor(setting.effect) ? ' ' + hexText(setting.color) : "") + ", " + percent.data();
}

std::string actionText(const ButtonAction &action)
{
    std::string text(storedName(action.which()));
    switch (valueType(action.which())) {
    case ValueType::integer:
        return text + ':' + std::to_string(std::get<Int>(action.value()));
    case ValueType::text:
        return text + ':' + std::get<std::string>(action.value());
    case ValueType::bytes:
        return text + ':' + hexOf(action.toButtonFunction());
    case ValueType::none:
        break;
    }
    return text;
}

std::vector<std::string> actionWords(const RazerDevice &device)
{
    std::vector<std::string> words;
    for (const auto &choice : buttonActionChoices(device.capabilities().hasHyperScroll)) {
        const auto which = choice.action.which();
        std::string word(storedName(which));
        if (which == Case::dpiChange || which == Case::profileSwitch) {
            word += ":0.." + std::to_string(which == Case::dpiChange ? highestDPIChange : highestProfile);
        } else if (which == Case::keyPress) {
            word += ":KEY";
        }
        words.push_back(std::move(word));
    }
    words.emplace_back("other:BYTES");
    return words;
}

ButtonAction canonical(const ButtonAction &action)
{
    const auto function = action.toButtonFunction();
    auto named = ButtonAction(function);
    return named.toButtonFunction() == function ? named : action;
}

std::optional<std::string> obstacleTo(MouseButton button, const ButtonAction &action,
                                      const RazerDevice &device)
{
    if (button == MouseButton::left && canonical(action) != ButtonAction::leftClick()) {
        return "the left button always stays the left click";
    }
    if (action.which() == Case::macroPlay) {
        return "the mouse cannot hold macros";
    }
    if (action.which() != Case::other && !isOffered(action.which(), device)) {
        return "the " + device.name() + " has no action " + std::string(storedName(action.which()));
    }
    const auto *shortcut = std::get_if<std::string>(&action.value());
    if (shortcut != nullptr && parseKeyboardShortcut(*shortcut).keyCode == 0) {
        return "there is no key \"" + *shortcut + '"';
    }
    return std::nullopt;
}

std::optional<ButtonAction> actionFromText(const std::string &text, const RazerDevice &device,
                                           std::string *failure)
{
    const auto colon = text.find(':');
    const auto value = colon == std::string::npos ? std::nullopt : std::optional(text.substr(colon + 1));
    const auto which = caseOfStoredName(text.substr(0, colon));
    if (which == Case::macroPlay) {
        *failure = "macroPlay cannot be set: the mouse cannot hold macros";
        return std::nullopt;
    }
    const bool hasStrayValue = which && value && valueType(*which) == ValueType::none;
    if (!which || hasStrayValue || (*which != Case::other && !isOffered(*which, device))) {
        *failure = noSuchWord(device, "action", text, actionWords(device));
        return std::nullopt;
    }
    switch (*which) {
    case Case::dpiChange:
    case Case::profileSwitch:
        return numberedAction(*which, value, failure);
    case Case::keyPress:
        return keyAction(value, failure);
    case Case::other:
        return rawAction(value, failure);
    default:
        return ButtonAction::make(*which, {});
    }
}

} // namespace kelmoth
