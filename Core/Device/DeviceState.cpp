#include "Core/Device/DeviceState.h"

namespace kelmoth {

const DeviceState &DeviceState::defaultState()
{
    static const DeviceState state{
        .dpiStages =
            {
                {0, 400, DPIStageColor::red},
                {1, 800, DPIStageColor::orange},
                {2, 1600, DPIStageColor::yellow},
                {3, 3200, DPIStageColor::green},
                {4, 6400, DPIStageColor::blue},
            },
        .currentDPIStage = 2,
        .pollingRate = 1000,
        .rgbSettings = {},
        .buttonMappings =
            {
                {MouseButton::left, ButtonAction::leftClick()},
                {MouseButton::right, ButtonAction::rightClick()},
                {MouseButton::middle, ButtonAction::middleClick()},
                {MouseButton::forward, ButtonAction::forward()},
                {MouseButton::back, ButtonAction::back()},
                {MouseButton::dpiUp, ButtonAction::dpiChange(0)},
                {MouseButton::dpiDown, ButtonAction::dpiChange(0)},
                {MouseButton::scrollUp, ButtonAction::scrollUp()},
                {MouseButton::scrollDown, ButtonAction::scrollDown()},
                {MouseButton::clutch, ButtonAction::hypershift()},
                {MouseButton::profile, ButtonAction::profileSwitch(0)},
            },
        .hyperScrollEnabled = false,
        .scrollWheelMode = ScrollWheelMode::tactile,
    };
    return state;
}

} // namespace kelmoth
