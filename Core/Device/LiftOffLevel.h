#pragma once

#include "Core/Device/RawValues.h"
#include "Core/Device/Types.h"

#include <optional>

namespace kelmoth {

/// The height at which a mouse that is lifted stops tracking. What is stored and sent are their numbers, from
/// 0 on.
enum class LiftOffLevel { low, medium, high };

template <> struct RawValues<LiftOffLevel> {
    /// `title` and `label` are English and the keys of their translations; `label` tells the distance.
    struct Row {
        std::string_view rawValue;
        std::string_view title;
        std::string_view label;
    };
    static constexpr std::array table{
        Row{"low", "Low", "Low (1 mm)"},
        Row{"medium", "Medium", "Medium (2 mm)"},
        Row{"high", "High", "High (3 mm)"},
    };
};

/// The level of a number; none for a number that is no level's.
constexpr std::optional<LiftOffLevel> liftOffLevelOf(Int number)
{
    const bool isLevel = number >= 0 && number < std::ssize(RawValues<LiftOffLevel>::table);
    return isLevel ? std::optional(static_cast<LiftOffLevel>(number)) : std::nullopt;
}

} // namespace kelmoth
