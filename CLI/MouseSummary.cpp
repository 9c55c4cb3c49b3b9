#include "CLI/MouseSummary.h"

#include "Platform/Linux/Doctor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>

namespace kelmoth {

namespace {

/// Why commands cannot be sent to a mouse that is attached like this; empty when they can.
std::string kindReason(const RazerDevice &device)
{
    if (device.isBluetooth()) {
        return "Bluetooth: use the cable or the receiver";
    }
    if (device.vendorID != razerVendorID) {
        return "another vendor";
    }
    return device.isConfigurable() ? "" : "unknown model";
}

MouseSummary summarize(const HIDMonitor &monitor, const RazerDevice &device)
{
    MouseSummary mouse{device, {}, kindReason(device)};
    const auto handle = monitor.deviceHandle(device.id);
    if (!handle) {
        mouse.reason = "unplugged";
        return mouse;
    }
    mouse.path = handle->path();
    if (!mouse.reason.empty()) {
        return mouse;
    }
    const int status = handle->probeAccess();
    if (status == EACCES || status == EPERM) {
        mouse.isForbidden = true;
        mouse.reason = "no permission: \"kelmothctl doctor\" says what to do";
    } else if (status != 0) {
        mouse.reason = "cannot be opened: " + std::generic_category().message(status);
    }
    return mouse;
}

std::string title(const MouseSummary &mouse)
{
    return mouse.device.name() + " (" + productIDText(mouse.device.productID) + ")";
}

/// The first of the mice that another choice would reach; they are told apart by their product IDs.
std::string otherChoice(const MouseSummary &mouse, const std::vector<MouseSummary> &mice)
{
    const auto other = std::ranges::find_if(mice, [&mouse](const auto &candidate) {
        return candidate.isConfigurable() && candidate.device.productID != mouse.device.productID;
    });
    return other == mice.end() ? ""
                               : "\n\"--product " + productIDText(other->device.productID) +
                                     "\" chooses the " + other->device.name() + " instead.";
}

Failure forbidden(const MouseSummary &mouse, const std::vector<MouseSummary> &mice)
{
    return {ExitStatus::noPermission, "no permission to open " + mouse.path + ", the " + title(mouse) + '\n' +
                                          permissionRemedy() + "\n\"kelmothctl doctor\" looks closer." +
                                          otherChoice(mouse, mice)};
}

Failure absent(const std::vector<MouseSummary> &mice, std::optional<std::uint16_t> productID)
{
    std::string message = mice.empty() ? noneAttached(productID) : "no mouse to configure";
    for (const auto &mouse : mice) {
        message += "\n" + title(mouse) + ": " + mouse.reason;
    }
    return {ExitStatus::noMouse,
            message + "\n\"kelmothctl doctor\" looks closer; \"kelmothctl --simulate basilisk-v3 COMMAND\" "
                      "works without a mouse."};
}

void addIdentity(nlohmann::ordered_json &json, const RazerDevice &device)
{
    json["productID"] = device.productID;
    json["name"] = device.name();
    json["connection"] = device.connectionLabel();
    json["transport"] = device.transport;
}

void addCharge(nlohmann::ordered_json &json, const RazerDevice &device)
{
    json["batteryLevel"] = nullptr;
    if (device.batteryLevel) {
        json["batteryLevel"] = *device.batteryLevel;
    }
    json["isCharging"] = device.isCharging;
}

} // namespace

std::vector<MouseSummary> summarizeMice(const HIDMonitor &monitor)
{
    std::vector<MouseSummary> mice;
    for (const auto &device : monitor.connectedDevices()) {
        mice.push_back(summarize(monitor, device));
    }
    return mice;
}

bool isGone(const RazerDevice &device, const HIDMonitor &monitor)
{
    // The node of a mouse that is pulled out goes before the system tells of it.
    const auto handle = monitor.deviceHandle(device.id);
    return !handle || handle->probeAccess() == ENODEV;
}

std::vector<MouseSummary> relisted(std::vector<MouseSummary> mice, const HIDMonitor &monitor)
{
    const auto &listed = monitor.connectedDevices();
    std::erase_if(mice, [&](MouseSummary &mouse) {
        const auto device = std::ranges::find(listed, mouse.device);
        if (device == listed.end() || isGone(mouse.device, monitor)) {
            return true;
        }
        mouse.device = *device;
        return false;
    });
    return mice;
}

nlohmann::ordered_json identityJSON(const MouseSummary &mouse)
{
    nlohmann::ordered_json json;
    addIdentity(json, mouse.device);
    json["path"] = mouse.path;
    return json;
}

nlohmann::ordered_json mouseJSON(const RazerDevice &device, const std::string &path)
{
    nlohmann::ordered_json json;
    addIdentity(json, device);
    addCharge(json, device);
    json["path"] = path;
    return json;
}

nlohmann::ordered_json mouseJSON(const MouseSummary &mouse)
{
    nlohmann::ordered_json json;
    addIdentity(json, mouse.device);
    json["configurable"] = mouse.isConfigurable();
    json["reason"] = nullptr;
    if (!mouse.isConfigurable()) {
        json["reason"] = mouse.reason;
    }
    addCharge(json, mouse.device);
    json["path"] = mouse.path;
    return json;
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

std::string productIDText(std::uint16_t productID)
{
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "0x%04X", unsigned{productID});
    return text.data();
}

std::string noneAttached(std::optional<std::uint16_t> productID)
{
    return productID ? "no mouse with product ID " + productIDText(*productID) + " is attached"
                     : "no supported mouse is attached";
}

std::variant<MouseSummary, Failure> chooseMouse(const HIDMonitor &monitor,
                                                std::optional<std::uint16_t> productID)
{
    const auto mice = summarizeMice(monitor);
    const auto mouse =
        std::ranges::find_if(mice, [](const auto &listed) { return listed.device.isConfigurable(); });
    if (mouse != mice.end() && mouse->isConfigurable()) {
        return *mouse;
    }
    if (mouse != mice.end() && mouse->isForbidden) {
        return forbidden(*mouse, mice);
    }
    if (mice.empty() && !monitor.isMonitoring()) {
        return Failure{ExitStatus::failed, std::string(noView)};
    }
    return absent(mice, productID);
}

} // namespace kelmoth
