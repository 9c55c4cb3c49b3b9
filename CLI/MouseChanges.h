#pragma once

#include "Core/Device/RawValues.h"
#include "Core/Device/RazerDevice.h"

#include <vector>

namespace kelmoth {

/// Something that happened to a mouse.
struct MouseChange {
    enum class Kind { attached, detached, battery };
    Kind kind;
    RazerDevice device; ///< as it is now; one that is detached as it last was
};

template <> struct RawValues<MouseChange::Kind> {
    static constexpr std::array table{
        std::string_view{"attached"},
        std::string_view{"detached"},
        std::string_view{"battery"},
    };
};

/// What leads from one device list to a later one: first the mice that have gone, then, in list order, those
/// that have come and those whose battery or charging status has changed.
std::vector<MouseChange> changesBetween(const std::vector<RazerDevice> &before,
                                        const std::vector<RazerDevice> &after);

} // namespace kelmoth
