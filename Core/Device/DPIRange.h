#pragma once

#include "Core/Device/DeviceCapabilities.h"

namespace kelmoth {

inline constexpr Int lowestDPI = 100;
inline constexpr Int dpiStep = 100;
inline constexpr Int mostDPIStages = 5; ///< that a mouse of the family holds

/// Whether a stage of the model may be set to this DPI.
inline bool isValidDPI(Int dpi, const DeviceCapabilities &capabilities)
{
    return dpi >= lowestDPI && dpi <= capabilities.maxDPI && dpi % dpiStep == 0;
}

} // namespace kelmoth
