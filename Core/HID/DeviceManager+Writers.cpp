// Changing one setting on the mouse. Nothing is published or saved before the mouse has answered.
//
// Commands are named before they are sent: g++ 12 destroys a temporary of an aggregate twice when it is made
// inside a co_await expression.

#include "Core/Device/DPIRange.h"
#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/DeviceManager.h"
#include "Core/HID/DeviceManagerSections.h"
#include "Core/HID/RazerProtocol.h"

#include <algorithm>

namespace kelmoth {

namespace {

constexpr Int lastProfile = 5;
constexpr Int highestLiftOff = 2;

bool isStage(Int stage, const DeviceState &state)
{
    return stage >= 0 && stage < std::ssize(state.dpiStages);
}

bool isOffered(RGBZone zone, const RGBSetting &setting, const DeviceCapabilities &capabilities)
{
    const auto &zones = capabilities.rgbZones;
    const auto &effects = capabilities.rgbEffects;
    return std::ranges::find(zones, zone) != zones.end() &&
           std::ranges::find(effects, setting.effect) != effects.end() && setting.brightness >= 0.0 &&
           setting.brightness <= 1.0;
}

bool holds(const Data &response, const ButtonFunction &function)
{
    return std::equal(function.begin(), function.end(),
                      response.begin() + RazerProtocol::offset::buttonFunction);
}

} // namespace

/// The device to write to; without one the user is told.
std::optional<RazerDevice> DeviceManager::configurableDeviceOrToast()
{
    auto device = configurableDevice();
    if (!device) {
        m_toastManager->error("No device connected");
    }
    return device;
}

/// Tells the user of a failure, unless it is of a mouse that has gone.
void DeviceManager::failure(const RazerDevice &device, const std::string &message)
{
    if (isCurrent(device)) {
        m_toastManager->error(message);
    }
}

QCoro::Task<bool> DeviceManager::setDPI(Int dpi, std::optional<Int> stage)
{
    const auto device = configurableDeviceOrToast();
    if (!device) {
        co_return false;
    }
    const Int position = stage.value_or(m_deviceState.currentDPIStage);
    if (!isStage(position, m_deviceState)) {
        m_toastManager->error("Invalid DPI stage");
        co_return false;
    }
    if (!isValidDPI(dpi, device->capabilities())) {
        m_toastManager->error("DPI outside supported range");
        co_return false;
    }
    auto state = m_deviceState;
    state.dpiStages[static_cast<std::size_t>(position)].dpi = dpi;
    co_return co_await writeDPI(std::move(state), *device, "Failed to set DPI");
}

QCoro::Task<bool> DeviceManager::setDPIStage(Int stage)
{
    const auto device = configurableDevice();
    if (!device || !isStage(stage, m_deviceState)) {
        co_return false;
    }
    auto state = m_deviceState;
    state.currentDPIStage = stage;
    co_return co_await writeDPI(std::move(state), *device, "Failed to change DPI stage");
}

QCoro::Task<bool> DeviceManager::writeDPI(DeviceState state, RazerDevice device, std::string message)
{
    if (isBusy()) {
        co_return false;
    }
    const QPointer<DeviceManager> self(this);
    const WritingSection writing(this);
    const RazerCommand setStages = command::setDPIStages{state.dpiStages, state.currentDPIStage};
    const std::optional<Data> answer = co_await m_hidMonitor->send(setStages, device);
    if (!self || !isCurrent(device)) {
        co_return false;
    }
    if (!answer) {
        failure(device, message);
        co_return false;
    }
    setDeviceState(std::move(state));
    saveSettings();
    co_return true;
}

QCoro::Task<bool> DeviceManager::setRGB(RGBZone zone, RGBSetting setting)
{
    const auto device = configurableDeviceOrToast();
    if (!device || !isOffered(zone, setting, device->capabilities()) || isBusy()) {
        co_return false;
    }
    const QPointer<DeviceManager> self(this);
    const WritingSection writing(this);
    const auto known = m_deviceState.rgbSettings.find(zone);
    const auto previous =
        known == m_deviceState.rgbSettings.end() ? std::nullopt : std::optional(known->second.brightness);
    const RazerCommand setBrightness = command::setBrightness{zone, setting.brightness};
    const std::optional<Data> dimmed = co_await m_hidMonitor->send(setBrightness, *device);
    if (!self) {
        co_return false;
    }
    if (!dimmed) {
        failure(*device, "Failed to set RGB lighting");
        co_return false;
    }
    const RazerCommand setEffect = command::setRGB{zone, setting};
    const std::optional<Data> lit = co_await m_hidMonitor->send(setEffect, *device);
    if (!self || !isCurrent(*device)) {
        co_return false;
    }
    if (!lit) {
        if (previous) {
            // The mouse must not keep the new brightness with the old colour.
            const RazerCommand restore = command::setBrightness{zone, *previous};
            co_await m_hidMonitor->send(restore, *device);
        }
        if (self) {
            failure(*device, "Failed to set RGB lighting");
        }
        co_return false;
    }
    auto state = m_deviceState;
    state.rgbSettings[zone] = setting;
    setDeviceState(std::move(state));
    saveSettings();
    co_return true;
}

QCoro::Task<bool> DeviceManager::setButtonMapping(MouseButton button, ButtonAction action, Int profile,
                                                  bool hypershift)
{
    constexpr auto failed = "Failed to apply button mapping";
    const auto device = configurableDeviceOrToast();
    if (!device || profile < 0 || profile > lastProfile) {
        co_return false;
    }
    if (button == MouseButton::left && action != ButtonAction::leftClick()) {
        m_toastManager->error("Left button always stays Left Click");
        co_return false;
    }
    if (!defaultButtonMappings(*device).contains(button) || isBusy()) {
        co_return false;
    }
    const QPointer<DeviceManager> self(this);
    const WritingSection writing(this);
    // Profile 0 is what the mouse acts on now, and what is read back.
    std::vector<Int> profiles{0};
    if (profile != 0) {
        profiles.push_back(profile);
    }
    bool isWritten = true;
    for (const Int number : profiles) {
        const RazerCommand assign = command::setButtonMapping{button, action, number, hypershift};
        const std::optional<Data> answer = co_await m_hidMonitor->send(assign, *device);
        if (!self) {
            co_return false;
        }
        isWritten = isWritten && answer.has_value();
    }
    if (!isWritten) {
        failure(*device, failed);
        co_return false;
    }
    const RazerCommand read = command::getButtonMapping{button, 0, hypershift};
    const std::optional<Data> readBack = co_await m_hidMonitor->send(read, *device);
    if (!self || !isCurrent(*device)) {
        co_return false;
    }
    if (!readBack || !holds(*readBack, action.toButtonFunction())) {
        failure(*device, failed);
        co_return false;
    }
    auto state = m_deviceState;
    state.buttonMappings.insert_or_assign(button, action);
    setDeviceState(std::move(state));
    saveSettings();
    m_toastManager->success("Button remapped");
    co_return true;
}

QCoro::Task<bool> DeviceManager::setLiftOff(Int level)
{
    const auto device = configurableDevice();
    if (!device || level < 0 || level > highestLiftOff || isBusy()) {
        co_return false;
    }
    const QPointer<DeviceManager> self(this);
    const WritingSection writing(this);
    const RazerCommand prepare = command::prepareLiftOff{};
    const std::optional<Data> prepared = co_await m_hidMonitor->send(prepare, *device);
    bool isAccepted = false;
    if (self && prepared) {
        const RazerCommand set = command::setLiftOff{level};
        const std::optional<Data> answer = co_await m_hidMonitor->send(set, *device);
        isAccepted = answer.has_value();
    }
    if (!self) {
        co_return false;
    }
    const RazerCommand read = command::getLiftOff{};
    const std::optional<Data> response = co_await m_hidMonitor->send(read, *device);
    if (!self || !isCurrent(*device)) {
        co_return false;
    }
    const auto readBack = response ? RazerProtocol::parseLiftOff(*response) : std::nullopt;
    setLiftOffLevel(readBack);
    if (isAccepted && readBack == level) {
        co_return true;
    }
    failure(*device, "Failed to set lift-off distance");
    co_return false;
}

} // namespace kelmoth
