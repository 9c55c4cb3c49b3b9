#pragma once

#include "Core/Device/ButtonAction.h"
#include "Core/Device/DPIStage.h"
#include "Core/Device/MouseButton.h"
#include "Core/Device/RGBSetting.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmoth {

/// The mode of the scroll wheel.
enum class ScrollWheelMode { tactile, freeScroll, smartReel };

template <> struct RawValues<ScrollWheelMode> {
    static constexpr std::array table{
        std::string_view{"tactile"},
        std::string_view{"free_scroll"},
        std::string_view{"smart_reel"},
    };
};

/// The settings of one mouse: a plain value, compared field by field.
/// Nothing here checks ranges. A decoded record may carry any `currentDPIStage`: check it against the number
/// of stages before indexing.
struct DeviceState {
    std::vector<DPIStage> dpiStages;                    ///< in stage order; the mouse holds at most five
    Int currentDPIStage = 0;                            ///< 0-based position of the active stage
    Int pollingRate = 0;                                ///< reports a second, in hertz
    std::map<RGBZone, RGBSetting> rgbSettings;          ///< a zone without entry has no known setting yet
    std::map<MouseButton, ButtonAction> buttonMappings; ///< a button without entry is not remappable
    bool hyperScrollEnabled = false;
    ScrollWheelMode scrollWheelMode = ScrollWheelMode::tactile;

    /// What is shown before any mouse has been chosen.
    static const DeviceState &defaultState();

    bool operator==(const DeviceState &) const = default;
};

/// The stored form: one compact JSON object. Text that is not UTF-8 is stored with the replacement character.
/// None when a brightness or a speed is not finite: JSON has no such number.
std::optional<std::string> encode(const DeviceState &state);

/// Reads the stored form. Every member is required and must have its type: a whole number may be written
/// 1, 1.0 or 1e3, and must lie within 64 bits; members that the form does not name are ignored; of a map
/// key that occurs twice the last value counts. One failure fails the record: then the result is absent and
/// `failure`, when given, says what is wrong and where ("dpiStages[2].color: …").
std::optional<DeviceState> decodeDeviceState(std::string_view json, std::string *failure = nullptr);

} // namespace kelmoth
