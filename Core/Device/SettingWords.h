#pragma once

#include "Core/Device/ButtonAction.h"
#include "Core/Device/DeviceState.h"
#include "Core/Device/RazerDevice.h"
#include "Core/Device/Words.h"

#include <array>
#include <variant>

namespace kelmoth {

/// What the settings of a mouse are called. The words that are printed are those that are taken; letter case,
/// hyphens and underscores make no difference there, and the stored names are taken too. A plain value.
struct Vocabulary {
    std::string owner; ///< "the Razer Basilisk V3 has", before "no"
    std::vector<RGBZone> zones;
    std::vector<RGBEffect> effects;
    std::vector<MouseButton> buttons; ///< those that may be remapped
    bool hasHyperScroll = false;

    /// That of a mouse, by its model. Main thread.
    static Vocabulary of(const RazerDevice &device);

    /// That of all models together.
    static Vocabulary ofAll();

    /// The words for the actions; those that carry something are followed by a colon and what it is:
    /// "profile:1..5", "key:KEY".
    Words actions() const;
};

/// "#00ff80"
std::string hexText(RGBColor color);

/// The colour of six hexadecimal digits, perhaps after a "#"; none for any other text.
std::optional<RGBColor> colorFromText(std::string_view text);

/// An action in the words of the command line: "left-click", "dpi-stage:2", "key:ctrl+f5",
/// "raw:01010100000000".
std::string actionText(const ButtonAction &action);

/// The action in the form in which it is read back from a mouse, if it has one.
ButtonAction canonical(const ButtonAction &action);

/// Why a button of the mouse cannot be given an action; none when it can.
std::optional<std::string> obstacleTo(MouseButton button, const ButtonAction &action,
                                      const Vocabulary &vocabulary);

/// Reads an action, shortcuts into their canonical text. For a text that makes no action of the vocabulary:
/// what is wrong, and what is allowed.
std::variant<ButtonAction, std::string> actionFromText(std::string_view text, const Vocabulary &vocabulary);

} // namespace kelmoth
