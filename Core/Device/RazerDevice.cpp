#include "Core/Device/RazerDevice.h"

#include "Core/Device/Lowercase.h"
#include "Core/Services/L10n.h"

namespace kelmoth {

bool RazerDevice::isBluetooth() const
{
    return lowercased(transport).find("bluetooth") != std::string::npos;
}

std::optional<BasiliskProductID> RazerDevice::model() const
{
    if (const auto listed = basiliskProductID(productID)) {
        return listed;
    }
    if (!isBluetooth() || !advertisedName) {
        return std::nullopt;
    }
    // The longer names first: each of them contains the shorter one.
    const auto name = lowercased(*advertisedName);
    if (name.find("basilisk v3 x hyperspeed") != std::string::npos) {
        return BasiliskProductID::basiliskV3XHyperSpeed;
    }
    if (name.find("basilisk v3 pro") != std::string::npos) {
        return BasiliskProductID::basiliskV3ProWireless;
    }
    if (name.find("basilisk v3") != std::string::npos) {
        return BasiliskProductID::basiliskV3;
    }
    return std::nullopt;
}

std::string RazerDevice::name() const
{
    if (const auto known = model()) {
        return std::string(basiliskModel(*known).name);
    }
    return advertisedName ? *advertisedName : L10n::text("Unknown Razer Device");
}

std::string RazerDevice::connectionLabel() const
{
    if (isBluetooth()) {
        return "Bluetooth";
    }
    const auto known = model();
    return known ? std::string(basiliskModel(*known).connectionLabel) : "USB";
}

const DeviceCapabilities &RazerDevice::capabilities() const
{
    const auto known = model();
    return DeviceCapabilities::forDevice(known ? rawValue(*known) : productID);
}

bool RazerDevice::isConfigurable() const
{
    return vendorID == razerVendorID && !isBluetooth() && model().has_value();
}

} // namespace kelmoth
