#include "CLI/Reports/MouseReport.h"

#include <algorithm>
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

std::vector<MouseChange> changesBetween(const std::vector<RazerDevice> &before,
                                        const std::vector<RazerDevice> &after)
{
    std::vector<MouseChange> changes;
    for (const auto &device : before) {
        if (std::ranges::find(after, device) == after.end()) {
            changes.push_back({MouseChange::Kind::detached, device});
        }
    }
    for (const auto &device : after) {
        const auto known = std::ranges::find(before, device);
        if (known == before.end()) {
            changes.push_back({MouseChange::Kind::attached, device});
        }
        const bool wasRead = known != before.end() && known->batteryLevel == device.batteryLevel &&
                             known->isCharging == device.isCharging;
        if (device.batteryLevel && !wasRead) {
            changes.push_back({MouseChange::Kind::battery, device});
        }
    }
    return changes;
}

} // namespace kelmoth
