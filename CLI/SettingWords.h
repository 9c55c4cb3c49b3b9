#pragma once

#include "CLI/Words.h"
#include "Core/Device/ButtonAction.h"
#include "Core/Device/DeviceState.h"
#include "Core/Device/RazerDevice.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmoth {

/// The lift-off levels, in the order of their numbers.
inline constexpr std::array<std::string_view, 3> liftOffWords{"low", "medium", "high"};

/// The greatest number of an on-board profile that a user may name.
inline constexpr Int highestProfile = 5;

/// The words for the cases of a closed set.
template <class Cases> std::vector<std::string_view> rawWords(const Cases &cases)
{
    std::vector<std::string_view> words;
    words.reserve(cases.size());
    for (const auto value : cases) {
        words.push_back(rawValue(value));
    }
    return words;
}

/// The buttons of the device's model that may be remapped.
std::vector<MouseButton> buttonsOf(const RazerDevice &device);

/// 'the Razer Basilisk V3 has no zone "rim"; allowed are logo, underglow'
template <class Words>
std::string noSuchWord(const RazerDevice &device, std::string_view kind, std::string_view word,
                       const Words &allowed)
{
    return "the " + device.name() + " has no " + std::string(kind) + " \"" + std::string(word) +
           "\"; allowed are " + joined(allowed);
}

/// Whether the effect shows a colour of the user's choice.
bool hasColor(RGBEffect effect);

/// "#00FF80"
std::string hexText(RGBColor color);

/// The colour of six hexadecimal digits, perhaps after a "#"; none for any other text.
std::optional<RGBColor> colorFromText(std::string_view text);

/// "static #00FF00, 100 %"
std::string lightText(const RGBSetting &setting);

/// An action in the words of the command line: "leftClick", "dpiChange:2", "keyPress:ctrl+f5",
/// "other:01010100000000".
std::string actionText(const ButtonAction &action);

/// The words for the actions that the device's model offers.
std::vector<std::string> actionWords(const RazerDevice &device);

/// The action in the form in which it is read back from a mouse, if it has one.
ButtonAction canonical(const ButtonAction &action);

/// Why a button of the device cannot be given an action; none when it can.
std::optional<std::string> obstacleTo(MouseButton button, const ButtonAction &action,
                                      const RazerDevice &device);

/// Reads an action, shortcuts into their canonical text. None for a text that makes no action which the
/// device's model offers; `failure` then says what is wrong and what is allowed.
std::optional<ButtonAction> actionFromText(const std::string &text, const RazerDevice &device,
                                           std::string *failure);

} // namespace kelmoth
