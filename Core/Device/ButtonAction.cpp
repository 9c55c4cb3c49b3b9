#include "Core/Device/ButtonAction.h"

#include "Core/Device/KeyboardShortcut.h"
#include "Core/Services/L10n.h"

#include <algorithm>
#include <vector>

namespace kelmoth {

namespace {

using Case = ButtonAction::Case;
using ValueType = ButtonAction::ValueType;

/// Byte 0 of a button function.
enum FunctionClass : std::uint8_t {
    noFunction = 0x00,
    mouseButton = 0x01,
    keyboard = 0x02,
    dpi = 0x06,
    profile = 0x07,
    doubleClickClass = 0x0B,
    hypershiftClass = 0x0C,
    scrollMode = 0x12,
};

/// Byte 2 of the DPI and profile functions.
constexpr std::uint8_t select = 0x03; ///< the stage or profile whose number is in byte 3
constexpr std::uint8_t cycleProfile = 0x04;
constexpr std::uint8_t cycleDPI = 0x06;
constexpr std::uint8_t otherDPI = 0x07;

constexpr Int firstStageNumber = 2; ///< `dpiChange` value of stage 1
constexpr Int selectable = 5;       ///< stages, and profiles

struct Row {
    std::string_view storedName;
    ValueType valueType;
    std::string_view label; ///< empty where the value itself is the name
    std::string_view icon;
    ButtonFunction function; ///< of a case without a value
};

/// One row for each case, in declaration order.
constexpr std::array table{
    Row{"leftClick", ValueType::none, "Left Click", "hand.point.up.left.fill", {mouseButton, 1, 0x01}},
    Row{"rightClick", ValueType::none, "Right Click", "hand.point.up.fill", {mouseButton, 1, 0x02}},
    Row{"middleClick", ValueType::none, "Middle Click", "circle.fill", {mouseButton, 1, 0x03}},
    Row{"forward", ValueType::none, "Forward", "arrow.right", {mouseButton, 1, 0x05}},
    Row{"back", ValueType::none, "Back", "arrow.left", {mouseButton, 1, 0x04}},
    Row{"scrollUp", ValueType::none, "Scroll Up", "chevron.up", {mouseButton, 1, 0x09}},
    Row{"scrollDown", ValueType::none, "Scroll Down", "chevron.down", {mouseButton, 1, 0x0A}},
    Row{"disabled", ValueType::none, "Disabled", "nosign", {noFunction}},
    Row{"dpiChange", ValueType::integer, "DPI Cycle", "target", {}},
    Row{"profileSwitch", ValueType::integer, "Profile Switch", "person.2", {}},
    Row{"hypershift", ValueType::none, "Hypershift", "bolt.fill", {hypershiftClass, 1, 0x01}},
    Row{"keyPress", ValueType::text, "Keyboard Key", "keyboard", {}},
    Row{"macroPlay", ValueType::text, "", "", {}},
    Row{"doubleClick", ValueType::none, "Double Click", "hand.tap.fill", {doubleClickClass, 1, 0x01}},
    Row{"scrollModeToggle", ValueType::none, "Wheel Mode Toggle", "dial.medium", {scrollMode, 1, 0x01}},
    Row{"other", ValueType::bytes, "Custom function", "", {}},
};
static_assert(table.size() == static_cast<std::size_t>(Case::other) + 1);

constexpr const Row &row(Case which)
{
    return table[static_cast<std::size_t>(which)];
}

bool isSelectable(Int number)
{
    return number >= 1 && number <= selectable;
}

ButtonFunction dpiFunction(Int number)
{
    // Compared before the subtraction, which the least number would take out of its range.
    if (number >= firstStageNumber && isSelectable(number - firstStageNumber + 1)) {
        return {dpi, 2, select, static_cast<std::uint8_t>(number - firstStageNumber + 1)};
    }
    return {dpi, 1, number == 1 ? otherDPI : cycleDPI};
}

ButtonFunction profileFunction(Int number)
{
    if (isSelectable(number)) {
        return {profile, 2, select, static_cast<std::uint8_t>(number)};
    }
    return {profile, 1, cycleProfile};
}

/// Bytes cut or zero-filled to the seven of a function.
ButtonFunction normalised(std::span<const std::uint8_t> bytes)
{
    ButtonFunction function{};
    std::ranges::copy(bytes.first(std::min(bytes.size(), function.size())), function.begin());
    return function;
}

ButtonAction unrecognised(const ButtonFunction &function)
{
    return ButtonAction::other(Data(function.begin(), function.end()));
}

/// The case without a value whose function begins with these three bytes. What follows them is no argument.
ButtonAction plainAction(const ButtonFunction &function)
{
    for (std::size_t i = 0; i < table.size(); ++i) {
        const bool matches = std::equal(function.begin(), function.begin() + 3, table[i].function.begin());
        if (table[i].valueType == ValueType::none && matches) {
            return *ButtonAction::make(static_cast<Case>(i), {});
        }
    }
    return unrecognised(function);
}

ButtonAction keyAction(const ButtonFunction &function)
{
    auto text = function[1] == 2 ? shortcutString(function[2], function[3]) : std::nullopt;
    return text ? ButtonAction::keyPress(std::move(*text)) : unrecognised(function);
}

ButtonAction dpiAction(const ButtonFunction &function)
{
    if (function[1] == 1 && function[2] == cycleDPI) {
        return ButtonAction::dpiChange(0);
    }
    if (function[1] == 1 && function[2] == otherDPI) {
        return ButtonAction::dpiChange(1);
    }
    if (function[1] == 2 && function[2] == select && isSelectable(function[3])) {
        return ButtonAction::dpiChange(function[3] + firstStageNumber - 1);
    }
    return unrecognised(function);
}

ButtonAction profileAction(const ButtonFunction &function)
{
    if (function[1] == 1 && function[2] == cycleProfile) {
        return ButtonAction::profileSwitch(0);
    }
    if (function[1] == 2 && function[2] == select && isSelectable(function[3])) {
        return ButtonAction::profileSwitch(function[3]);
    }
    return unrecognised(function);
}

ButtonAction decoded(const ButtonFunction &function)
{
    switch (function[0]) {
    case noFunction:
        return ButtonAction::disabled();
    case keyboard:
        return keyAction(function);
    case dpi:
        return dpiAction(function);
    case profile:
        return profileAction(function);
    default:
        return plainAction(function);
    }
}

} // namespace

ButtonAction::ButtonAction(std::span<const std::uint8_t> function)
    : ButtonAction(decoded(normalised(function)))
{
}

std::optional<ButtonAction> ButtonAction::make(Case which, Value value)
{
    if (value.index() != static_cast<std::size_t>(row(which).valueType)) {
        return std::nullopt;
    }
    return ButtonAction(which, std::move(value));
}

ButtonFunction ButtonAction::toButtonFunction() const
{
    switch (m_which) {
    case Case::dpiChange:
        return dpiFunction(std::get<Int>(m_value));
    case Case::profileSwitch:
        return profileFunction(std::get<Int>(m_value));
    case Case::keyPress: {
        const auto shortcut = parseKeyboardShortcut(std::get<std::string>(m_value));
        return {keyboard, 2, shortcut.modifier, shortcut.keyCode};
    }
    case Case::other:
        return normalised(std::get<Data>(m_value));
    default:
        return row(m_which).function; // all zero for `macroPlay`, which the mouse cannot be given
    }
}

std::string_view storedName(ButtonAction::Case which)
{
    return row(which).storedName;
}

std::optional<ButtonAction::Case> caseOfStoredName(std::string_view name)
{
    const auto *found = std::ranges::find(table, name, &Row::storedName);
    return found == table.end() ? std::nullopt : std::optional(static_cast<Case>(found - table.begin()));
}

ButtonAction::ValueType valueType(ButtonAction::Case which)
{
    return row(which).valueType;
}

std::span<const ButtonActionChoice> buttonActionChoices(bool hasHyperScroll)
{
    static const std::vector<ButtonActionChoice> choices = [] {
        std::vector<ButtonActionChoice> list;
        for (auto &&action :
             {ButtonAction::leftClick(), ButtonAction::rightClick(), ButtonAction::middleClick(),
              ButtonAction::forward(), ButtonAction::back(), ButtonAction::scrollUp(),
              ButtonAction::scrollDown(), ButtonAction::doubleClick(), ButtonAction::disabled(),
              ButtonAction::dpiChange(0), ButtonAction::profileSwitch(0), ButtonAction::hypershift(),
              ButtonAction::keyPress({}), ButtonAction::scrollModeToggle()}) {
            list.push_back({action, row(action.which()).label, row(action.which()).icon});
        }
        return list;
    }();
    return std::span(choices).first(choices.size() - (hasHyperScroll ? 0 : 1));
}

std::string actionName(const ButtonAction &action)
{
    const auto &value = action.value();
    switch (action.which()) {
    case Case::profileSwitch:
        if (const Int number = std::get<Int>(value); number != 0) {
            return L10n::formatted("Profile %d", std::to_string(number));
        }
        break;
    case Case::keyPress:
        if (const auto &text = std::get<std::string>(value); !text.empty()) {
            return text;
        }
        break;
    case Case::macroPlay:
        return L10n::formatted("Macro: %@", std::get<std::string>(value));
    default:
        break;
    }
    return std::string(row(action.which()).label);
}

} // namespace kelmoth
