#pragma once

#include "Core/Device/RGBSetting.h"
#include "Core/Device/Types.h"

#include <cstdint>
#include <vector>

namespace kelmoth {

/// What a model supports and what is offered for it.
struct DeviceCapabilities {
    Int maxDPI;                    ///< highest DPI that the model accepts
    Int dpiStages;                 ///< number of DPI stages that the model holds
    std::vector<Int> pollingRates; ///< offered rates in hertz
    bool hasBattery;               ///< the battery is read and watched
    bool hasHyperScroll;           ///< the wheel can spin freely
    std::vector<RGBZone> rgbZones; ///< in display order
    Int buttonCount;
    std::vector<Int> factoryDPIPresets; ///< the model's default DPI of each stage
    std::vector<Int> dpiQuickPresets;   ///< DPI values offered as one-tap choices
    std::vector<RGBEffect> rgbEffects;  ///< in display order
    bool reportsCharging;               ///< the charging status can be read

    /// The row of a product ID; for one that is not listed, what any mouse of the maker may be expected to
    /// do. A caller that holds a device with a known model passes the model's product ID. Any thread.
    static const DeviceCapabilities &forDevice(std::uint16_t productID);

    /// Whether the model has the zone and the effect, and the brightness (0.0 to 1.0) and the speed (finite)
    /// can be stored. Any thread.
    bool offers(RGBZone zone, const RGBSetting &setting) const;
};

} // namespace kelmoth
