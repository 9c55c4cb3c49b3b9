#pragma once

#include "Core/Device/DeviceState.h"
#include "Core/Device/RazerDevice.h"
#include "Platform/UserDefaults.h"

#include <memory>
#include <optional>
#include <string>

namespace kelmoth {

/// The defaults of a device's model, overwritten by the valid parts of a saved record, if any. Stage numbers,
/// stage colours and the hyper-scroll switch are never taken from the record.
DeviceState mergeSavedState(const std::optional<DeviceState> &saved, const RazerDevice &device);

/// The saved settings: one record per product ID, and the legacy record for all. Main thread.
class SavedSettings {
public:
    /// The base of every key. A product's record has this, a full stop and the decimal ID as key; the legacy
    /// record has this alone.
    static constexpr std::string_view settingsKey = "com.kelmoth.deviceState";

    /// Reads the legacy record once.
    explicit SavedSettings(std::shared_ptr<UserDefaults> defaults);

    /// The settings to assume before the device is read: its defaults, overwritten by its product's record.
    /// The legacy record goes to the first device without one. Unusable records are ignored silently.
    DeviceState stateForDevice(const RazerDevice &device);

    /// Saves the settings for a device's product. False, and nothing changes, when they cannot be encoded.
    bool save(const DeviceState &state, const RazerDevice &device);

private:
    std::optional<DeviceState> load(const std::string &key) const;

    std::shared_ptr<UserDefaults> m_defaults;
    std::optional<DeviceState> m_legacySavedState;
};

} // namespace kelmoth
