#include "Core/HID/SavedSettings.h"

#include "Core/Device/DPIRange.h"
#include "Core/Device/DeviceDefaults.h"

#include <algorithm>

namespace kelmoth {

namespace {

/// Larger records are ignored; ours are far smaller.
constexpr std::size_t largestRecord = std::size_t{256} * 1024;

const std::string legacyKey(SavedSettings::settingsKey);
const std::string migratedKey = legacyKey + ".migrated";

std::string deviceKey(const RazerDevice &device)
{
    return legacyKey + "." + std::to_string(device.productID);
}

template <class T> bool contains(const std::vector<T> &values, const T &value)
{
    return std::ranges::find(values, value) != values.end();
}

void mergeStages(const DeviceState &saved, const DeviceCapabilities &capabilities, DeviceState &state)
{
    if (saved.dpiStages.size() == state.dpiStages.size()) {
        for (std::size_t i = 0; i < state.dpiStages.size(); ++i) {
            if (isValidDPI(saved.dpiStages[i].dpi, capabilities)) {
                state.dpiStages[i].dpi = saved.dpiStages[i].dpi;
            }
        }
    }
    if (saved.currentDPIStage >= 0 && saved.currentDPIStage < std::ssize(state.dpiStages)) {
        state.currentDPIStage = saved.currentDPIStage;
    }
}

} // namespace

DeviceState mergeSavedState(const std::optional<DeviceState> &saved, const RazerDevice &device)
{
    auto state = createDefaultState(device);
    if (!saved) {
        return state;
    }
    const auto &capabilities = device.capabilities();
    mergeStages(*saved, capabilities, state);
    if (contains(capabilities.pollingRates, saved->pollingRate)) {
        state.pollingRate = saved->pollingRate;
    }
    for (const auto &[zone, setting] : saved->rgbSettings) {
        if (contains(capabilities.rgbZones, zone)) {
            state.rgbSettings[zone] = setting;
        }
    }
    const auto &remappable = defaultButtonMappings(device);
    for (const auto &[button, action] : saved->buttonMappings) {
        if (remappable.contains(button)) {
            state.buttonMappings.insert_or_assign(button, action);
        }
    }
    if (capabilities.hasHyperScroll) {
        state.scrollWheelMode = saved->scrollWheelMode;
    }
    return state;
}

SavedSettings::SavedSettings(std::shared_ptr<UserDefaults> defaults)
    : m_defaults(std::move(defaults)), m_legacySavedState(load(legacyKey))
{
}

std::optional<DeviceState> SavedSettings::load(const std::string &key) const
{
    const auto record = m_defaults->dataForKey(key);
    return record && record->size() <= largestRecord ? decodeDeviceState(*record) : std::nullopt;
}

DeviceState SavedSettings::stateForDevice(const RazerDevice &device)
{
    const auto key = deviceKey(device);
    if (m_defaults->dataForKey(key)) {
        return mergeSavedState(load(key), device);
    }
    if (!m_legacySavedState || m_defaults->hasObjectForKey(migratedKey)) {
        return mergeSavedState(std::nullopt, device);
    }
    auto state = mergeSavedState(m_legacySavedState, device);
    if (save(state, device)) {
        m_defaults->setInteger(migratedKey, device.productID);
    }
    return state;
}

bool SavedSettings::save(const DeviceState &state, const RazerDevice &device)
{
    auto record = encode(state);
    if (!record) {
        return false;
    }
    m_defaults->setData(deviceKey(device), *std::move(record));
    return true;
}

} // namespace kelmoth
