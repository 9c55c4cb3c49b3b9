#include "Core/Device/DeviceDefaults.h"

#include <algorithm>
#include <array>

namespace kelmoth {

namespace {

constexpr std::array stageColors{DPIStageColor::red, DPIStageColor::orange, DPIStageColor::yellow,
                                 DPIStageColor::green, DPIStageColor::blue};
constexpr Int defaultDPI = 1600;
constexpr Int defaultPollingRate = 1000;
constexpr Int defaultStageNumber = 3; ///< counted from 1

using Mappings = std::map<MouseButton, ButtonAction>;

const Mappings &fiveButtons()
{
    static const Mappings mappings{
        {MouseButton::left, ButtonAction::leftClick()},     {MouseButton::right, ButtonAction::rightClick()},
        {MouseButton::middle, ButtonAction::middleClick()}, {MouseButton::forward, ButtonAction::forward()},
        {MouseButton::back, ButtonAction::back()},
    };
    return mappings;
}

const Mappings &sixButtons()
{
    static const Mappings mappings = [] {
        Mappings all = fiveButtons();
        all.emplace(MouseButton::dpiUp, ButtonAction::dpiChange(0));
        return all;
    }();
    return mappings;
}

const Mappings &elevenButtons()
{
    static const Mappings mappings = [] {
        Mappings all = sixButtons();
        all.emplace(MouseButton::dpiDown, ButtonAction::scrollModeToggle());
        all.emplace(MouseButton::scrollUp, ButtonAction::scrollUp());
        all.emplace(MouseButton::scrollDown, ButtonAction::scrollDown());
        all.emplace(MouseButton::clutch, ButtonAction::hypershift());
        all.emplace(MouseButton::profile, ButtonAction::profileSwitch(0));
        return all;
    }();
    return mappings;
}

Int preferredPollingRate(const std::vector<Int> &rates)
{
    if (rates.empty() || std::ranges::find(rates, defaultPollingRate) != rates.end()) {
        return defaultPollingRate;
    }
    return rates.front();
}

} // namespace

DPIStageColor stageColor(std::size_t position)
{
    return position < stageColors.size() ? stageColors[position] : DPIStageColor::white;
}

const std::map<MouseButton, ButtonAction> &defaultButtonMappings(const RazerDevice &device)
{
    const auto model = device.model();
    if (!model) {
        return fiveButtons();
    }
    switch (*model) {
    case BasiliskProductID::basiliskV3XHyperSpeed:
    case BasiliskProductID::basiliskV3XHyperSpeed2:
        return sixButtons();
    case BasiliskProductID::basiliskV3:
    case BasiliskProductID::basiliskV3ProWired:
    case BasiliskProductID::basiliskV3ProWireless:
    case BasiliskProductID::basiliskV3Pro:
        return elevenButtons();
    }
    return fiveButtons();
}

DeviceState createDefaultState(const RazerDevice &device)
{
    const auto &capabilities = device.capabilities();
    DeviceState state;
    for (Int i = 0; i < capabilities.dpiStages; ++i) {
        const auto position = static_cast<std::size_t>(i);
        const auto &presets = capabilities.factoryDPIPresets;
        state.dpiStages.push_back(
            {i, position < presets.size() ? presets[position] : defaultDPI, stageColor(position)});
    }
    state.currentDPIStage = std::min(capabilities.dpiStages, defaultStageNumber) - 1;
    state.pollingRate = preferredPollingRate(capabilities.pollingRates);
    for (const auto zone : capabilities.rgbZones) {
        state.rgbSettings[zone] = {RGBEffect::staticColor, defaultZoneColor, std::nullopt, 1.0, 0.5};
    }
    state.buttonMappings = defaultButtonMappings(device);
    return state;
}

} // namespace kelmoth
