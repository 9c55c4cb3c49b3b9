#include "Core/Device/DeviceCapabilities.h"

#include "Core/Device/BasiliskProductID.h"

#include <algorithm>
#include <cmath>

namespace kelmoth {

namespace {

using enum RGBZone;
using enum RGBEffect;

const DeviceCapabilities &basiliskV3ProCapabilities()
{
    static const DeviceCapabilities row{
        .maxDPI = 30000,
        .dpiStages = 5,
        .pollingRates = {125, 500, 1000, 4000},
        .hasBattery = true,
        .hasHyperScroll = true,
        .rgbZones = {scrollWheel, logo, underglow},
        .buttonCount = 11,
        .factoryDPIPresets = {400, 800, 1600, 3200, 6400},
        .dpiQuickPresets = {400, 800, 1600, 3200, 6400, 12000, 20000, 30000},
        .rgbEffects = {off, staticColor, spectrum, wave},
        .reportsCharging = true,
    };
    return row;
}

const DeviceCapabilities &basiliskV3XHyperSpeedCapabilities()
{
    static const DeviceCapabilities row{
        .maxDPI = 18000,
        .dpiStages = 5,
        .pollingRates = {125, 500, 1000},
        .hasBattery = true,
        .hasHyperScroll = false,
        .rgbZones = {scrollWheel},
        .buttonCount = 6,
        .factoryDPIPresets = {400, 800, 1600, 2400, 3200},
        .dpiQuickPresets = {400, 800, 1600, 2400, 3200, 6400, 12000, 18000},
        .rgbEffects = {off, staticColor, breathing, spectrum, wave, reactive},
        .reportsCharging = false,
    };
    return row;
}

const DeviceCapabilities &basiliskV3Capabilities()
{
    static const DeviceCapabilities row{
        .maxDPI = 26000,
        .dpiStages = 5,
        .pollingRates = {125, 500, 1000},
        .hasBattery = false,
        .hasHyperScroll = true,
        .rgbZones = {scrollWheel, logo, underglow},
        .buttonCount = 11,
        .factoryDPIPresets = {400, 800, 1600, 3200, 6400},
        .dpiQuickPresets = {400, 800, 1600, 3200, 6400, 12000, 18000, 26000},
        .rgbEffects = {off, staticColor, spectrum, wave},
        .reportsCharging = false,
    };
    return row;
}

const DeviceCapabilities &unknownCapabilities()
{
    static const DeviceCapabilities row{
        .maxDPI = 16000,
        .dpiStages = 5,
        .pollingRates = {125, 500, 1000},
        .hasBattery = false,
        .hasHyperScroll = false,
        .rgbZones = {scrollWheel},
        .buttonCount = 5,
        .factoryDPIPresets = {400, 800, 1600, 3200, 6400},
        .dpiQuickPresets = {400, 800, 1600, 2400, 3200, 6400, 10000, 16000},
        .rgbEffects = {off, staticColor},
        .reportsCharging = false,
    };
    return row;
}

} // namespace

const DeviceCapabilities &DeviceCapabilities::forDevice(std::uint16_t productID)
{
    const auto model = basiliskProductID(productID);
    if (!model) {
        return unknownCapabilities();
    }
    switch (*model) {
    case BasiliskProductID::basiliskV3ProWired:
    case BasiliskProductID::basiliskV3ProWireless:
    case BasiliskProductID::basiliskV3Pro:
        return basiliskV3ProCapabilities();
    case BasiliskProductID::basiliskV3XHyperSpeed:
    case BasiliskProductID::basiliskV3XHyperSpeed2:
        return basiliskV3XHyperSpeedCapabilities();
    case BasiliskProductID::basiliskV3:
        return basiliskV3Capabilities();
    }
    return unknownCapabilities();
}

bool DeviceCapabilities::offers(RGBZone zone, const RGBSetting &setting) const
{
    return std::ranges::find(rgbZones, zone) != rgbZones.end() &&
           std::ranges::find(rgbEffects, setting.effect) != rgbEffects.end() && setting.brightness >= 0.0 &&
           setting.brightness <= 1.0 && std::isfinite(setting.speed);
}

} // namespace kelmoth
