#pragma once

#include "Core/Device/BasiliskProductID.h"
#include "Core/Device/DeviceCapabilities.h"
#include "Core/Device/Types.h"

#include <QUuid>

#include <optional>
#include <string>

namespace kelmoth {

/// The vendor ID whose mice are configured. Mice of the other one are listed only.
inline constexpr std::uint16_t razerVendorID = 0x1532;
inline constexpr std::uint16_t otherVendorID = 0x068E;

/// One attached HID interface that discovery accepted. Equality is by `id` alone.
struct RazerDevice {
    QUuid id = QUuid::createUuid(); ///< made afresh at every attach
    std::uint16_t vendorID = 0;     ///< HID property "VendorID"
    std::uint16_t productID = 0;    ///< HID property "ProductID"
    std::optional<std::string> serialNumber;
    std::string transport = "Unknown"; ///< "USB", "Bluetooth"; "Unknown" when the system does not say
    std::optional<std::string> advertisedName;
    std::optional<Int> batteryLevel; ///< percent, 0 to 100; absent until first read
    bool isCharging = false;         ///< false until read

    /// Whether the transport, in any letter case, names Bluetooth. Such a device is listed, never configured.
    bool isBluetooth() const;

    /// The model: by product ID, or for a Bluetooth device with another product ID by its advertised name.
    /// None for every other device.
    std::optional<BasiliskProductID> model() const;

    /// The model's name, else the advertised name, else the localised "Unknown Razer Device". Main thread.
    std::string name() const;

    /// "Bluetooth", the model's label, or "USB" for an unknown model; English, a translation key.
    std::string connectionLabel() const;

    /// The capabilities of the model, or those of the product ID while the model is unknown.
    const DeviceCapabilities &capabilities() const;

    /// Whether commands may be sent: the maker's own vendor ID, not Bluetooth, a known model.
    bool isConfigurable() const;

    bool operator==(const RazerDevice &other) const { return id == other.id; }
};

} // namespace kelmoth
