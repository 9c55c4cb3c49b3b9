#include "Core/Device/SettingWords.h"

#include "Core/Device/DPIRange.h"
#include "Core/Device/DeviceDefaults.h"
#include "Core/Device/KeyboardShortcut.h"
#include "Core/Device/Lowercase.h"

#include <cstdio>
#include <set>

namespace kelmoth {

namespace {

using Case = ButtonAction::Case;
using ActionOrFailure = std::variant<ButtonAction, std::string>;

/// What stands behind the colon of an action.
enum class Takes { nothing, number, key, bytes, name };

/// A word for an action. Where it takes a number, `first` stands for the lowest value of the action; else
/// `first` is the value.
struct ActionWord {
    std::string_view word;
    Case which;
    Takes takes = Takes::nothing;
    Int first = 0;
    Int lowest = 0;
    Int highest = 0;
    bool isStored = false; ///< as files have it: understood, not shown
};

/// The first word that fits an action is shown for it.
constexpr std::array actionWords{
    ActionWord{"left-click", Case::leftClick},
    ActionWord{"right-click", Case::rightClick},
    ActionWord{"middle-click", Case::middleClick},
    ActionWord{"forward", Case::forward},
    ActionWord{"back", Case::back},
    ActionWord{"scroll-up", Case::scrollUp},
    ActionWord{"scroll-down", Case::scrollDown},
    ActionWord{"double-click", Case::doubleClick},
    ActionWord{"disabled", Case::disabled},
    ActionWord{"dpi-cycle", Case::dpiChange},
    ActionWord{"dpi-stage", Case::dpiChange, Takes::number, 2, 1, mostDPIStages},
    ActionWord{"profile-switch", Case::profileSwitch},
    ActionWord{"profile", Case::profileSwitch, Takes::number, 1, 1, lastProfile},
    ActionWord{"hypershift", Case::hypershift},
    ActionWord{"key", Case::keyPress, Takes::key},
    ActionWord{"wheel-mode", Case::scrollModeToggle},
    ActionWord{"raw", Case::other, Takes::bytes},
    ActionWord{"macro", Case::macroPlay, Takes::name, 0, 0, 0, true},
    ActionWord{"dpi-change", Case::dpiChange, Takes::number, 0, 0, mostDPIStages + 1, true},
    ActionWord{"profile-switch", Case::profileSwitch, Takes::number, 0, 0, lastProfile, true},
    ActionWord{"key-press", Case::keyPress, Takes::key, 0, 0, 0, true},
    ActionWord{"scroll-mode-toggle", Case::scrollModeToggle, Takes::nothing, 0, 0, 0, true},
    ActionWord{"other", Case::other, Takes::bytes, 0, 0, 0, true},
    ActionWord{"macro-play", Case::macroPlay, Takes::name, 0, 0, 0, true},
};

/// The bytes that a text of two hexadecimal digits each stands for; none for any other text.
template <std::size_t size> std::optional<std::array<std::uint8_t, size>> bytesFromHex(std::string_view text)
{
    std::uint64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    const bool isWhole = result.ec == std::errc{} && result.ptr == text.data() + text.size();
    if (text.size() != 2 * size || !isWhole) {
        return std::nullopt;
    }
    std::array<std::uint8_t, size> bytes{};
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte, number >>= 8U) {
        *byte = static_cast<std::uint8_t>(number);
    }
    return bytes;
}

std::string hexOf(std::span<const std::uint8_t> bytes, const char *format)
{
    std::string text;
    for (const auto byte : bytes) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), format, unsigned{byte});
        text += digits.data();
    }
    return text;
}

bool isOffered(Case which, const Vocabulary &vocabulary)
{
    return which != Case::macroPlay && (which != Case::scrollModeToggle || vocabulary.hasHyperScroll);
}

std::string range(const ActionWord &row)
{
    return std::to_string(row.lowest) + ".." + std::to_string(row.highest);
}

/// The action of a word and what stands behind its colon, which is `hasValue`.
ActionOrFailure makeAction(const ActionWord &row, const std::string &value)
{
    const std::string word(row.word);
    switch (row.takes) {
    case Takes::number: {
        const auto number = wholeNumber(value);
        if (!number || *number < row.lowest || *number > row.highest) {
            return word + " takes a number: " + word + ':' + range(row);
        }
        return *ButtonAction::make(row.which, *number - row.lowest + row.first);
    }
    case Takes::key: {
        auto name = lowercased(value);
        // What shortcuts call cmd has these names on this system.
        for (const std::string_view super : {"super+", "meta+"}) {
            if (const auto at = name.find(super); at != std::string::npos) {
                name.replace(at, super.size(), "cmd+");
            }
        }
        const auto shortcut = parseKeyboardShortcut(name);
        auto text = shortcutString(shortcut.modifier, shortcut.keyCode);
        if (!text) {
            const auto names = keyNames();
            return "there is no key \"" + value + "\"; " + word +
                   " takes one, with ctrl+, alt+, shift+ or cmd+ before it; the keys are " +
                   joined(Words(names.begin(), names.end()));
        }
        return ButtonAction::keyPress(*std::move(text));
    }
    case Takes::bytes: {
        const auto bytes = bytesFromHex<ButtonFunction{}.size()>(value);
        if (!bytes) {
            return word + " takes the seven bytes of a function as 14 hexadecimal digits";
        }
        return canonical(ButtonAction::other({bytes->begin(), bytes->end()}));
    }
    case Takes::name:
        return std::string("the mouse cannot hold macros");
    case Takes::nothing:
        break;
    }
    const bool isNumbered = valueType(row.which) == ButtonAction::ValueType::integer;
    return *ButtonAction::make(row.which, isNumbered ? ButtonAction::Value(row.first) : std::monostate{});
}

/// Puts some cases among others, each once, in their order.
template <class E> void unite(std::vector<E> &all, const std::vector<E> &some)
{
    std::set<E> cases(all.begin(), all.end());
    cases.insert(some.begin(), some.end());
    all.assign(cases.begin(), cases.end());
}

std::vector<MouseButton> buttonsOf(const RazerDevice &device)
{
    std::vector<MouseButton> buttons;
    for (const auto &entry : defaultButtonMappings(device)) {
        buttons.push_back(entry.first);
    }
    return buttons;
}

} // namespace

Vocabulary Vocabulary::of(const RazerDevice &device)
{
    const auto &capabilities = device.capabilities();
    return {"the " + device.name() + " has", capabilities.rgbZones, capabilities.rgbEffects,
            buttonsOf(device), capabilities.hasHyperScroll};
}

Vocabulary Vocabulary::ofAll()
{
    Vocabulary all{"there is", {}, {}, {}, true};
    for (const auto &model : basiliskModels()) {
        RazerDevice device;
        device.productID = rawValue(model.productID);
        const auto own = of(device);
        unite(all.zones, own.zones);
        unite(all.effects, own.effects);
        unite(all.buttons, own.buttons);
    }
    return all;
}

Words Vocabulary::actions() const
{
    Words words;
    for (const auto &row : actionWords) {
        if (row.isStored || !isOffered(row.which, *this)) {
            continue;
        }
        const std::array takes{std::string{}, ':' + range(row), std::string(":KEY"), std::string(":BYTES")};
        words.push_back(std::string(row.word) + takes.at(static_cast<std::size_t>(row.takes)));
    }
    return words;
}

std::string hexText(RGBColor color)
{
    return '#' + hexOf(std::array{color.r, color.g, color.b}, "%02x");
}

std::optional<RGBColor> colorFromText(std::string_view text)
{
    const auto bytes = bytesFromHex<3>(text.starts_with('#') ? text.substr(1) : text);
    return bytes ? std::optional(RGBColor{(*bytes)[0], (*bytes)[1], (*bytes)[2]}) : std::nullopt;
}

std::string actionText(const ButtonAction &action)
{
    const auto *number = std::get_if<Int>(&action.value());
    std::string text;
    for (const auto &row : actionWords) {
        const Int last = row.first + row.highest - row.lowest;
        if (row.which != action.which() || (number && (*number < row.first || *number > last))) {
            continue;
        }
        text = row.word;
        if (row.takes == Takes::number) {
            return text + ':' + std::to_string(*number - row.first + row.lowest);
        }
        if (row.takes == Takes::bytes) {
            return text + ':' + hexOf(action.toButtonFunction(), "%02X");
        }
        return row.takes == Takes::nothing ? text : text + ':' + std::get<std::string>(action.value());
    }
    return hyphenated(storedName(action.which())) + ':' + std::to_string(number ? *number : 0);
}

ButtonAction canonical(const ButtonAction &action)
{
    const auto function = action.toButtonFunction();
    auto named = ButtonAction(function);
    return named.toButtonFunction() == function ? named : action;
}

std::optional<std::string> obstacleTo(MouseButton button, const ButtonAction &action,
                                      const Vocabulary &vocabulary)
{
    if (button == MouseButton::left && canonical(action) != ButtonAction::leftClick()) {
        return "the left button always stays the left click";
    }
    if (action.which() == Case::macroPlay) {
        return "the mouse cannot hold macros";
    }
    if (!isOffered(action.which(), vocabulary)) {
        return vocabulary.owner + " no action " + actionText(action);
    }
    const auto *shortcut = std::get_if<std::string>(&action.value());
    if (shortcut != nullptr && parseKeyboardShortcut(*shortcut).keyCode == 0) {
        return "there is no key \"" + *shortcut + '"';
    }
    return std::nullopt;
}

ActionOrFailure actionFromText(std::string_view text, const Vocabulary &vocabulary)
{
    const auto colon = text.find(':');
    const bool hasValue = colon != std::string_view::npos;
    const std::string value(hasValue ? text.substr(colon + 1) : "");
    const auto head = folded(text.substr(0, colon));
    const ActionWord *likely = nullptr; // says at least what the word takes
    for (const auto &row : actionWords) {
        const bool isKnown = row.takes == Takes::name || isOffered(row.which, vocabulary);
        if (folded(row.word) == head && isKnown) {
            if (hasValue == (row.takes != Takes::nothing)) {
                return makeAction(row, value);
            }
            likely = row.takes == Takes::nothing ? likely : &row;
        }
    }
    return likely ? makeAction(*likely, value)
                  : ActionOrFailure(noSuchWord(vocabulary.owner, "action", text, vocabulary.actions()));
}

} // namespace kelmoth
