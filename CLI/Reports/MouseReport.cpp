#include "CLI/Reports/MouseReport.h"

#include <array>
#include <cstdio>

namespace kelmoth {

namespace {

using JSON = nlohmann::ordered_json;

/// How a mouse is attached, in one word.
const char *connectionWord(const RazerDevice &device)
{
    const auto label = device.connectionLabel();
    if (label == "Bluetooth") {
        return "bluetooth";
    }
    return label.ends_with("receiver") ? "receiver" : "usb-cable";
}

} // namespace

std::string productIDText(std::int64_t productID)
{
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "0x%04llX", static_cast<unsigned long long>(productID));
    return text.data();
}

std::string title(const RazerDevice &device)
{
    return device.name() + " (" + productIDText(device.productID) + ")";
}

std::string batteryText(const RazerDevice &device)
{
    if (!device.capabilities().hasBattery) {
        return "-";
    }
    if (!device.batteryLevel) {
        return "unknown";
    }
    return std::to_string(*device.batteryLevel) + (device.isCharging ? " % (charging)" : " %");
}

JSON deviceJSON(const RazerDevice &device, const std::string &path)
{
    return {{"productID", device.productID},
            {"name", device.name()},
            {"connection", connectionWord(device)},
            {"transport", device.transport},
            {"path", path}};
}

JSON batteryJSON(const RazerDevice &device)
{
    return device.batteryLevel ? JSON{{"level", *device.batteryLevel}, {"charging", device.isCharging}}
                               : JSON();
}

JSON mouseJSON(const ListedMouse &mouse)
{
    const bool isConfigurable = mouse.obstacle == Obstacle::none;
    return {{"schema", schema},
            {"device", deviceJSON(mouse.device, mouse.path)},
            {"battery", batteryJSON(mouse.device)},
            {"configurable", isConfigurable},
            {"reason", isConfigurable ? JSON() : JSON(rawValue(mouse.obstacle))}};
}

} // namespace kelmoth
