#pragma once

#include "CLI/Mice.h"

namespace kelmoth {

/// "0x00AA"
std::string productIDText(std::int64_t productID);

/// "Razer Basilisk V3 (0x0099)"
std::string title(const RazerDevice &device);

/// "78 %", "78 % (charging)", "unknown" before it has been read, "-" where there is no battery to read.
std::string batteryText(const RazerDevice &device);

/// The member "device" of JSON output: the identity and location of a mouse.
nlohmann::ordered_json deviceJSON(const RazerDevice &device, const std::string &path);

/// The member "battery"; null without a battery or an answer.
nlohmann::ordered_json batteryJSON(const RazerDevice &device);

/// The members "configurable" and "reason" with these two.
nlohmann::ordered_json mouseJSON(const ListedMouse &mouse);

/// An event of a mouse.
struct MouseChange {
    enum class Kind { attached, detached, battery };
    Kind kind;
    RazerDevice device; ///< its current state, or the last one before its detach
};

template <> struct RawValues<MouseChange::Kind> {
    static constexpr std::array table{
        std::string_view{"attached"},
        std::string_view{"detached"},
        std::string_view{"battery"},
    };
};

/// The events between two device lists: first the detached mice, then, in list order, the attached ones and
/// those whose battery or charging status has changed.
std::vector<MouseChange> changesBetween(const std::vector<RazerDevice> &before,
                                        const std::vector<RazerDevice> &after);

} // namespace kelmoth
