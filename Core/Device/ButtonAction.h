#pragma once

#include "Core/Device/Types.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace kelmoth {

/// One button's assignment as the mouse holds it: byte 0 the function class, byte 1 the number of argument
/// bytes, bytes 2 to 6 the arguments, zero-filled. Bytes 11 to 17 of the button-mapping reports.
using ButtonFunction = std::array<std::uint8_t, 7>;

/// The stored profiles are counted from 1.
inline constexpr Int lastProfile = 5;

/// What one mouse button does. A plain value; two actions are equal when case and value are equal.
class ButtonAction {
public:
    /// The cases, in the order of their stored names.
    enum class Case {
        leftClick,
        rightClick,
        middleClick,
        forward,
        back,
        scrollUp,
        scrollDown,
        disabled,
        dpiChange,
        profileSwitch,
        hypershift,
        keyPress,
        macroPlay,
        doubleClick,
        scrollModeToggle,
        other,
    };

    /// The type of the value that a case carries.
    enum class ValueType { none, integer, text, bytes };

    static ButtonAction leftClick() { return ButtonAction{Case::leftClick}; }
    static ButtonAction rightClick() { return ButtonAction{Case::rightClick}; }
    static ButtonAction middleClick() { return ButtonAction{Case::middleClick}; }
    static ButtonAction forward() { return ButtonAction{Case::forward}; }
    static ButtonAction back() { return ButtonAction{Case::back}; }
    static ButtonAction scrollUp() { return ButtonAction{Case::scrollUp}; }
    static ButtonAction scrollDown() { return ButtonAction{Case::scrollDown}; }
    static ButtonAction disabled() { return ButtonAction{Case::disabled}; }
    /// 0 cycles through the stages, 1 is the mouse's other single-argument DPI function, 2 to 6 select
    /// stage 1 to 5. Any other number acts like 0.
    static ButtonAction dpiChange(Int number) { return {Case::dpiChange, number}; }
    /// 1 to 5 select that profile; any other number switches to the next one.
    static ButtonAction profileSwitch(Int number) { return {Case::profileSwitch, number}; }
    static ButtonAction hypershift() { return ButtonAction{Case::hypershift}; }
    /// A key with optional modifiers as shortcut text (see parseKeyboardShortcut), UTF-8; empty while no key
    /// has been chosen.
    static ButtonAction keyPress(std::string shortcut) { return {Case::keyPress, std::move(shortcut)}; }
    /// A macro by name. The mouse cannot be given one: it encodes as `disabled`.
    static ButtonAction macroPlay(std::string name) { return {Case::macroPlay, std::move(name)}; }
    static ButtonAction doubleClick() { return ButtonAction{Case::doubleClick}; }
    static ButtonAction scrollModeToggle() { return ButtonAction{Case::scrollModeToggle}; }
    /// A function that no other case describes, as its raw bytes.
    static ButtonAction other(Data bytes) { return {Case::other, std::move(bytes)}; }

    /// The action of a button function as the mouse reports it. Never fails: input of any length is cut or
    /// zero-filled to seven bytes, and what is not recognised becomes `other`.
    explicit ButtonAction(std::span<const std::uint8_t> function);

    /// The action of a case by its stored name, with the value it carries. None when the value's type is not
    /// the case's own.
    using Value = std::variant<std::monostate, Int, std::string, Data>;
    static std::optional<ButtonAction> make(Case which, Value value);

    Case which() const { return m_which; }
    const Value &value() const { return m_value; }

    /// The seven bytes that assign this action, for bytes 11 to 17 of the set-button-mapping report.
    ButtonFunction toButtonFunction() const;

    bool operator==(const ButtonAction &) const = default;

private:
    explicit ButtonAction(Case which) : m_which(which) {}
    ButtonAction(Case which, Value value) : m_which(which), m_value(std::move(value)) {}

    Case m_which;
    Value m_value;
};

/// The name under which a case is stored, which is also its name on the command line ("dpiChange").
std::string_view storedName(ButtonAction::Case which);

/// The case stored under this name, compared exactly; none for any other.
std::optional<ButtonAction::Case> caseOfStoredName(std::string_view name);

/// The type of the value that a case carries.
ButtonAction::ValueType valueType(ButtonAction::Case which);

/// One entry of the list of actions that a user can pick.
struct ButtonActionChoice {
    ButtonAction action;
    std::string_view label; ///< English, and the key of its translation
    std::string_view icon;  ///< name of the symbol shown beside it
};

/// The actions that a user can pick, in order. "Wheel Mode Toggle", the last, is in the list only for models
/// with a hyper-scroll wheel.
std::span<const ButtonActionChoice> buttonActionChoices(bool hasHyperScroll);

/// The name under which an assigned action is shown, in the interface language where it is a formatted text
/// ("Profile %d", "Macro: %@"), else the English text that is the key of its translation. Main thread.
std::string actionName(const ButtonAction &action);

} // namespace kelmoth
