// Changing one setting on the mouse. Nothing is published or saved before the mouse has answered.
//
// Commands are named before they are sent: g++ 12 destroys a temporary of an aggregate twice when it is made
// inside a co_await expression.

#include "Core/Device/DPIRange.h"
#include "Core/Device/DeviceDefaults.h"
#include "Core/Device/LiftOffLevel.h"
#include "Core/HID/DeviceManager.h"
#include "Core/HID/DeviceManagerSections.h"
#include "Core/HID/RazerProtocol.h"

#include <algorithm>

namespace kelmoth {

namespace {

using Kind = WriteResult::Kind;

constexpr auto noDevice = "No device connected";

bool isStage(Int stage, const DeviceState &state)
{
    return stage >= 0 && stage < std::ssize(state.dpiStages);
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
    TransactResult result = co_await m_manager->m_hidMonitor.transact(command, m_device);
    m_isUnanswered = m_isUnanswered || result.kind == TransactResult::Kind::noResponse;
    co_return result.kind == TransactResult::Kind::success ? std::optional(std::move(result.response))
                                                           : std::nullopt;
}

bool DeviceManager::WritingSection::isCurrent() const
{
    return !m_manager.isNull() && m_manager->isCurrent(m_device);
}

WriteResult DeviceManager::WritingSection::conclude(bool accepted, const std::string &failure,
                                                    const std::function<void(DeviceState &)> &change)
{
    if (!isCurrent()) {
        return {Kind::unplugged};
    }
    if (!accepted) {
        return {m_isUnanswered ? Kind::noAnswer : Kind::refused, failure};
    }
    if (change) {
        auto state = m_manager->m_deviceState;
        change(state);
        m_manager->commit(std::move(state));
    }
    return {};
}

/// Waits for a change and shows its message as a toast. True when the mouse accepted it.
QCoro::Task<bool> DeviceManager::showMessage(QPointer<DeviceManager> self, QCoro::Task<WriteResult> change)
{
    const WriteResult result = co_await change;
    if (self && !result.message.empty()) {
        auto &toasts = self->m_toastManager;
        result.isDone() ? toasts.success(result.message) : toasts.error(result.message);
    }
    co_return result.isDone();
}

// Take `self` first: a change may end, and destroy the manager, before it returns its task.

QCoro::Task<bool> DeviceManager::setDPI(Int dpi, std::optional<Int> stage)
{
    const QPointer<DeviceManager> self(this);
    return showMessage(self, changeDPI(dpi, stage));
}

QCoro::Task<bool> DeviceManager::setDPIStage(Int stage)
{
    const QPointer<DeviceManager> self(this);
    return showMessage(self, changeDPIStage(stage));
}

QCoro::Task<bool> DeviceManager::setRGB(RGBZone zone, RGBSetting setting)
{
    const QPointer<DeviceManager> self(this);
    return showMessage(self, changeRGB(zone, setting));
}

QCoro::Task<bool> DeviceManager::setButtonMapping(MouseButton button, ButtonAction action, Int profile,
                                                  bool hypershift)
{
    const QPointer<DeviceManager> self(this);
    return showMessage(self, changeButtonMapping(button, std::move(action), profile, hypershift));
}

QCoro::Task<bool> DeviceManager::setLiftOff(Int level)
{
    const QPointer<DeviceManager> self(this);
    return showMessage(self, changeLiftOff(level));
}

QCoro::Task<WriteResult> DeviceManager::changeDPI(Int dpi, std::optional<Int> stage)
{
    const auto device = configurableDevice();
    if (!device) {
        co_return WriteResult{Kind::noDevice, noDevice};
    }
    const Int position = stage.value_or(m_deviceState.currentDPIStage);
    if (!isStage(position, m_deviceState)) {
        co_return WriteResult{Kind::invalid, "Invalid DPI stage"};
    }
    if (!isValidDPI(dpi, device->capabilities())) {
        co_return WriteResult{Kind::invalid, "DPI outside supported range"};
    }
    auto state = m_deviceState;
    state.dpiStages[static_cast<std::size_t>(position)].dpi = dpi;
    co_return co_await writeDPI(std::move(state), *device, "Failed to set DPI");
}

QCoro::Task<WriteResult> DeviceManager::changeDPIStage(Int stage)
{
    const auto device = configurableDevice();
    if (!device || !isStage(stage, m_deviceState)) {
        co_return WriteResult{device ? Kind::invalid : Kind::noDevice};
    }
    auto state = m_deviceState;
    state.currentDPIStage = stage;
    co_return co_await writeDPI(std::move(state), *device, "Failed to change DPI stage");
}

QCoro::Task<WriteResult> DeviceManager::writeDPI(DeviceState state, RazerDevice device, std::string message)
{
    if (isBusy()) {
        co_return WriteResult{Kind::busy};
    }
    WritingSection writing(this, device);
    const RazerCommand setStages = command::setDPIStages{state.dpiStages, state.currentDPIStage};
    const std::optional<Data> answer = co_await writing.send(setStages);
    co_return writing.conclude(answer.has_value(), message,
                               [&](DeviceState &published) { published = state; });
}

QCoro::Task<WriteResult> DeviceManager::changeRGB(RGBZone zone, RGBSetting setting)
{
    constexpr auto failed = "Failed to set RGB lighting";
    const auto device = configurableDevice();
    if (!device) {
        co_return WriteResult{Kind::noDevice, noDevice};
    }
    const bool isValid = device->capabilities().offers(zone, setting);
    if (!isValid || isBusy()) {
        co_return WriteResult{isValid ? Kind::busy : Kind::invalid};
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
        // Restore the brightness: the mouse must not keep the new one with the old colour.
        const RazerCommand restore = command::setBrightness{zone, *previous};
        co_await writing.send(restore);
    }
    co_return writing.conclude(lit.has_value(), failed,
                               [&](DeviceState &state) { state.rgbSettings[zone] = setting; });
}

QCoro::Task<WriteResult> DeviceManager::changeButtonMapping(MouseButton button, ButtonAction action,
                                                            Int profile, bool hypershift)
{
    const auto device = configurableDevice();
    if (!device) {
        co_return WriteResult{Kind::noDevice, noDevice};
    }
    if (profile < 0 || profile > lastProfile) {
        co_return WriteResult{Kind::invalid};
    }
    if (button == MouseButton::left && action != ButtonAction::leftClick()) {
        co_return WriteResult{Kind::invalid, "Left button always stays Left Click"};
    }
    const bool isValid = defaultButtonMappings(*device).contains(button);
    if (!isValid || isBusy()) {
        co_return WriteResult{isValid ? Kind::busy : Kind::invalid};
    }
    WritingSection writing(this, *device);
    // Profile 0 is always written first, and is the one read back.
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
    WriteResult result = writing.conclude(isHeld, "Failed to apply button mapping", [&](DeviceState &state) {
        state.buttonMappings.insert_or_assign(button, action);
    });
    if (result.isDone() && writing.isCurrent()) {
        result.message = "Button remapped";
    }
    co_return result;
}

QCoro::Task<WriteResult> DeviceManager::changeLiftOff(Int level)
{
    const auto device = configurableDevice();
    if (!device || !liftOffLevelOf(level)) {
        co_return WriteResult{device ? Kind::invalid : Kind::noDevice};
    }
    if (isBusy()) {
        co_return WriteResult{Kind::busy};
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
