#pragma once

#include "Core/Device/DeviceState.h"
#include "Core/Device/RazerDevice.h"
#include "Platform/UserDefaults.h"

#include <memory>
#include <optional>
#include <string>

namespace kelmoth {

/// The defaults of a device's model with the valid parts of a saved record laid over them; the defaults when
/// there is none. Stage numbers and colours, and whether hyper-scroll is on, are never taken over.
DeviceState mergeSavedState(const std::optional<DeviceState> &saved, const RazerDevice &device);

/// The settings kept for each product ID, and those of the time when there was one record for all. Main
/// thread.
class SavedSettings {
public:
    /// The base of every key. The record of a product is stored under this, a full stop and the ID in
    /// decimal; the older single record under this alone.
    static constexpr std::string_view settingsKey = "com.kelmoth.deviceState";

    /// Reads the older record, once.
    explicit SavedSettings(std::shared_ptr<UserDefaults> defaults);

    /// What the device is taken to be set to before it has been asked: its defaults, with what was saved for
    /// its product laid over them. The older record goes to the first device that has none of its own.
    /// Records that cannot be used count as none, silently.
    DeviceState stateForDevice(const RazerDevice &device);

    /// Keeps the settings of a device's product. False, and what was kept stays, when they have no stored
    /// form.
    bool save(const DeviceState &state, const RazerDevice &device);

private:
    std::optional<DeviceState> load(const std::string &key) const;

    std::shared_ptr<UserDefaults> m_defaults;
    std::optional<DeviceState> m_legacySavedState;
};

} // namespace kelmoth
