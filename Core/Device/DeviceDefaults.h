#pragma once

#include "Core/Device/DeviceState.h"
#include "Core/Device/RazerDevice.h"

#include <cstddef>
#include <map>

namespace kelmoth {

/// The colour of a new DPI stage at this 0-based position.
DPIStageColor stageColor(std::size_t position);

/// The colour of a zone for which the mouse and the settings name none.
inline constexpr RGBColor defaultZoneColor{0, 255, 0};

/// The default action of each button of a model. Its keys are also the buttons that may be remapped.
const std::map<MouseButton, ButtonAction> &defaultButtonMappings(const RazerDevice &device);

/// The settings that a mouse is taken to have before it has been asked and nothing has been saved.
DeviceState createDefaultState(const RazerDevice &device);

} // namespace kelmoth
