#pragma once

#include "Core/Device/RawValues.h"

#include <cstdint>

namespace kelmoth {

/// Lighting zones, in the order in which every control lists them.
enum class RGBZone { scrollWheel, logo, underglow, dpiLight };

template <> struct RawValues<RGBZone> {
    /// `title` is English and the key of its translation.
    struct Row {
        std::string_view rawValue;
        std::string_view title;
    };
    static constexpr std::array table{
        Row{"scroll_wheel", "Scroll Wheel"},
        Row{"logo", "Logo"},
        Row{"underglow", "Underglow"},
        Row{"dpi_light", "DPI Light"},
    };
};

/// Lighting effects. The first six stand in the order of the effect codes that the mouse reports.
enum class RGBEffect { off, staticColor, breathing, spectrum, wave, reactive, starlight, ripple };

template <> struct RawValues<RGBEffect> {
    static constexpr std::array table{
        std::string_view{"off"},       std::string_view{"static"}, std::string_view{"breathing"},
        std::string_view{"spectrum"},  std::string_view{"wave"},   std::string_view{"reactive"},
        std::string_view{"starlight"}, std::string_view{"ripple"},
    };
};

/// Whether the effect shows a colour of the user's choice.
constexpr bool hasColor(RGBEffect effect)
{
    return effect == RGBEffect::staticColor || effect == RGBEffect::breathing ||
           effect == RGBEffect::reactive;
}

/// A colour of 8 bits a channel, without alpha.
struct RGBColor {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;

    bool operator==(const RGBColor &) const = default;
};

/// The lighting of one zone.
struct RGBSetting {
    RGBEffect effect = RGBEffect::off;
    RGBColor color;                         ///< the primary colour
    std::optional<RGBColor> secondaryColor; ///< for effects that take two colours; absent otherwise
    double brightness = 0.0;                ///< fraction of full brightness, 0.0 to 1.0
    double speed = 0.0;                     ///< effect speed as a fraction; 0.5 when read from the mouse

    bool operator==(const RGBSetting &) const = default;
};

} // namespace kelmoth
