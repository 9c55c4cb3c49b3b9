#include "Core/Device/BasiliskProductID.h"
#include "Core/Device/RazerDevice.h"
#include "Platform/Simulated/SimulatedMouse.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace kelmoth {

namespace {

constexpr std::string_view unknownName = "unknown";
constexpr std::string_view bluetoothSuffix = ":bluetooth";

/// A product of the maker that no catalogue row has.
constexpr std::uint16_t unlistedProductID = 0x0F99;

SimulatedModel usbModel(std::uint16_t productID, std::string_view productName)
{
    std::array<char, 16> serialNumber{};
    std::snprintf(serialNumber.data(), serialNumber.size(), "SIM%04X", unsigned{productID});
    return {razerVendorID, productID, std::string{productName}, serialNumber.data(), "USB"};
}

} // namespace

std::optional<SimulatedModel> SimulatedModel::named(std::string_view name)
{
    if (name == unknownName) {
        return usbModel(unlistedProductID, "Razer Unlisted Mouse");
    }
    const bool isBluetooth = name.ends_with(bluetoothSuffix);
    if (isBluetooth) {
        name.remove_suffix(bluetoothSuffix.size());
    }
    const auto models = basiliskModels();
    const auto row = std::ranges::find(models, name, &BasiliskModel::commandLineName);
    if (row == models.end()) {
        return std::nullopt;
    }
    auto model = usbModel(rawValue(row->productID), row->name);
    if (isBluetooth) {
        model.transport = "Bluetooth";
    }
    return model;
}

std::vector<std::string> SimulatedModel::names()
{
    std::vector<std::string> names;
    for (const auto &model : basiliskModels()) {
        names.emplace_back(model.commandLineName);
    }
    names.emplace_back(unknownName);
    return names;
}

} // namespace kelmoth
