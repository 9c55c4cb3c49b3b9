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
#include <cmath>

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
           setting.brightness <= 1.0 && std::isfinite(setting.speed);
}

bool holds(const Data &response, const ButtonFunction &function)
{
    return std::equal(function.begin(), function.end(),
                      response.begin() + RazerProtocol::offset::buttonFunction);
}

} // namespace

DeviceManager::WritingSection::WritingSection(DeviceManager *manager, RazerDevice device)
    : m_manager(manager), m_device(std::move(device))
{
    m_manager->m_isWriting = true;
}

DeviceManager::WritingSection::~WritingSection()
{
    if (m_manager) {
        m_manager->m_isWriting = false;
        m_manager->runPendingRefresh();
    }
}

QCoro::Task<std::optional<Data>> DeviceManager::WritingSection::send(RazerCommand command)
{
    if (!m_manager) {
        co_return std::nullopt;
    }
    std::optional<Data> answer = co_await m_manager->m_hidMonitor.send(command, m_device);
    co_return answer;
}

bool DeviceManager::WritingSection::isCurrent() const
{
    return !m_manager.isNull() && m_manager->isCurrent(m_device);
}

bool DeviceManager::WritingSection::conclude(bool accepted, const std::string &failure,
                                             const std::function<void(DeviceState &)> &change)
{
    if (!isCurrent()) {
        return false;
    }
    if (!accepted) {
        m_manager->m_toastManager.error(failure);
        return false;
    }
    if (change) {
        auto state = m_manager->m_deviceState;
        change(state);
        m_manager->commit(std::move(state));
    }
    return true;
}

/// The device to write to; without one the user is told.
std::optional<RazerDevice> DeviceManager::configurableDeviceOrToast()
{
    auto device = configurableDevice();
    if (!device) {
        m_toastManager.error("No device connected");
    }
    return device;
}

QCoro::Task<bool> DeviceManager::setDPI(Int dpi, std::optional<Int> stage)
{
    const auto device = configurableDeviceOrToast();
    if (!device) {
        co_return false;
    }
    const Int position = stage.value_or(m_deviceState.currentDPIStage);
    if (!isStage(position, m_deviceState)) {
        m_toastManager.error("Invalid DPI stage");
        co_return false;
    }
    if (!isValidDPI(dpi, device->capabilities())) {
        m_toastManager.error("DPI outside supported range");
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
    WritingSection writing(this, device);
    const RazerCommand setStages = command::setDPIStages{state.dpiStages, state.currentDPIStage};
    const std::optional<Data> answer = co_await writing.send(setStages);
    co_return writing.conclude(answer.has_value(), message,
                               [&](DeviceState &published) { published = state; });
}

QCoro::Task<bool> DeviceManager::setRGB(RGBZone zone, RGBSetting setting)
{
    constexpr auto failed = "Failed to set RGB lighting";
    const auto device = configurableDeviceOrToast();
    if (!device || !isOffered(zone, setting, device->capabilities()) || isBusy()) {
        co_return false;
    }
    const auto known = m_deviceState.rgbSettings.find(zone);
    const auto previous =
        known == m_deviceState.rgbSettings.end() ? std::nullopt : std::optional(known->second.brightness);
    WritingSection writing(this, *device);
    const RazerCommand setBrightness = command::setBrightness{zone, setting.brightness};
    const std::optional<Data> dimmed = co_await writing.send(setBrightness);
    if (!dimmed) {
        co_return writing.conclude(false, failed);
    }
    const RazerCommand setEffect = command::setRGB{zone, setting};
    const std::optional<Data> lit = co_await writing.send(setEffect);
    if (!lit && previous && writing.isCurrent()) {
        // The mouse must not keep the new brightness with the old colour.
        const RazerCommand restore = command::setBrightness{zone, *previous};
        co_await writing.send(restore);
    }
    co_return writing.conclude(lit.has_value(), failed,
                               [&](DeviceState &state) { state.rgbSettings[zone] = setting; });
}

QCoro::Task<bool> DeviceManager::setButtonMapping(MouseButton button, ButtonAction action, Int profile,
                                                  bool hypershift)
{
    const auto device = configurableDeviceOrToast();
    if (!device || profile < 0 || profile > lastProfile) {
        co_return false;
    }
    if (button == MouseButton::left && action != ButtonAction::leftClick()) {
        m_toastManager.error("Left button always stays Left Click");
        co_return false;
    }
    if (!defaultButtonMappings(*device).contains(button) || isBusy()) {
        co_return false;
    }
    WritingSection writing(this, *device);
    // Profile 0 is always written, first, and is what is read back.
    std::vector<Int> profiles{0};
    if (profile != 0) {
        profiles.push_back(profile);
    }
    bool isWritten = true;
    for (const Int number : profiles) {
        const RazerCommand assign = command::setButtonMapping{button, action, number, hypershift};
        const std::optional<Data> answer = co_await writing.send(assign);
        isWritten = isWritten && answer.has_value();
    }
    std::optional<Data> readBack;
    if (isWritten) {
        const RazerCommand read = command::getButtonMapping{button, 0, hypershift};
        readBack = co_await writing.send(read);
    }
    const bool isHeld = readBack && holds(*readBack, action.toButtonFunction());
    const bool isDone = writing.conclude(isHeld, "Failed to apply button mapping", [&](DeviceState &state) {
        state.buttonMappings.insert_or_assign(button, action);
    });
    if (isDone && writing.isCurrent()) {
        m_toastManager.success("Button remapped");
    }
    co_return isDone;
}

QCoro::Task<bool> DeviceManager::setLiftOff(Int level)
{
    const auto device = configurableDevice();
    if (!device || level < 0 || level > highestLiftOff || isBusy()) {
        co_return false;
    }
    WritingSection writing(this, *device);
    const RazerCommand prepare = command::prepareLiftOff{};
    std::optional<Data> answer = co_await writing.send(prepare);
    if (answer) {
        const RazerCommand set = command::setLiftOff{level};
        answer = co_await writing.send(set);
    }
    const RazerCommand read = command::getLiftOff{};
    const std::optional<Data> response = co_await writing.send(read);
    const auto readBack = response ? RazerProtocol::parseLiftOff(*response) : std::nullopt;
    if (writing.isCurrent()) {
        m_liftOffLevel = readBack;
        notify({&DeviceManager::liftOffLevelChanged});
    }
    co_return writing.conclude(answer && readBack == level, "Failed to set lift-off distance");
}

} // namespace kelmoth
