#pragma once

#include "Core/Device/ButtonAction.h"
#include "Core/Device/DPIStage.h"
#include "Core/Device/MouseButton.h"
#include "Core/Device/RGBSetting.h"

#include <variant>
#include <vector>

namespace kelmoth {

/// The protocol's commands, one alternative each; a plain value.
namespace command {

/// All stages (those beyond the fifth are not sent) and the active one, 0-based.
struct setDPIStages {
    std::vector<DPIStage> stages;
    Int activeStage = 0;
};
struct getDPIStages {};
/// Effect and colour of a zone. Brightness has a command of its own.
struct setRGB {
    RGBZone zone;
    RGBSetting setting;
};
struct getRGB {
    RGBZone zone;
};
/// Brightness of a zone, 0.0 to 1.0.
struct setBrightness {
    RGBZone zone;
    double brightness = 0.0;
};
struct getBrightness {
    RGBZone zone;
};
/// Must be answered before `setLiftOff` is sent.
struct prepareLiftOff {};
/// Lift-off distance: 0 low, 1 medium, 2 high.
struct setLiftOff {
    Int level = 0;
};
struct getLiftOff {};
struct getBatteryLevel {};
struct getChargingStatus {};
/// Assigns a button in one profile (0 to 5) and layer.
struct setButtonMapping {
    MouseButton button;
    ButtonAction action;
    Int profile = 0;
    bool hypershift = false;
};
struct getButtonMapping {
    MouseButton button;
    Int profile = 0;
    bool hypershift = false;
};

} // namespace command

using RazerCommand =
    std::variant<command::setDPIStages, command::getDPIStages, command::setRGB, command::getRGB,
                 command::setBrightness, command::getBrightness, command::prepareLiftOff, command::setLiftOff,
                 command::getLiftOff, command::getBatteryLevel, command::getChargingStatus,
                 command::setButtonMapping, command::getButtonMapping>;

} // namespace kelmoth
