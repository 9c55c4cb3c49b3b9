#include "CLI/Mice.h"

#include "CLI/Reports/MouseReport.h"
#include "Platform/Linux/Doctor.h"

#include <algorithm>
#include <cerrno>

namespace kelmoth {

namespace {

using Code = Failure::Code;

/// Why a mouse takes no commands over this connection.
Obstacle obstacleOfKind(const RazerDevice &device)
{
    if (device.isBluetooth()) {
        return Obstacle::bluetooth;
    }
    if (device.vendorID != razerVendorID) {
        return Obstacle::otherVendor;
    }
    return device.isConfigurable() ? Obstacle::none : Obstacle::unsupported;
}

} // namespace

ListedMouse look(const RazerDevice &device, const HIDMonitor &monitor)
{
    ListedMouse mouse{device, {}, obstacleOfKind(device)};
    const auto handle = monitor.deviceHandle(device.id);
    if (!handle) {
        mouse.obstacle = Obstacle::unplugged;
        return mouse;
    }
    mouse.path = handle->path();
    if (mouse.obstacle == Obstacle::none) {
        const int status = handle->probeAccess();
        const bool isRefused = status == EACCES || status == EPERM;
        if (status != 0) {
            mouse.obstacle = isRefused ? Obstacle::permission : Obstacle::unreachable;
        }
    }
    return mouse;
}

namespace {

Failure forbidden(const ListedMouse &mouse, const std::vector<ListedMouse> &mice)
{
    auto remedy = permissionRemedy() + "\n\"kelmothctl doctor\" looks closer.";
    // Mice are identified by their product IDs.
    const auto other = std::ranges::find_if(mice, [&mouse](const auto &candidate) {
        return candidate.obstacle == Obstacle::none && candidate.device.productID != mouse.device.productID;
    });
    if (other != mice.end()) {
        remedy += "\n\"--product " + productIDText(other->device.productID) + "\" chooses the " +
                  other->device.name() + " instead.";
    }
    return {Code::noPermission, "no permission to open " + mouse.path + ", the " + title(mouse.device),
            std::move(remedy)};
}

} // namespace

std::vector<ListedMouse> listMice(Session *session)
{
    std::vector<ListedMouse> mice;
    for (const auto &device : session->devices()) {
        mice.push_back(look(device, session->monitor()));
    }
    return mice;
}

bool isGone(const RazerDevice &device, const HIDMonitor &monitor)
{
    // The node of an unplugged mouse disappears before the system reports it.
    const auto handle = monitor.deviceHandle(device.id);
    return !handle || handle->probeAccess() == ENODEV;
}

QCoro::Task<bool> readBattery(ListedMouse *mouse, HIDMonitor *monitor, QDeadlineTimer deadline)
{
    if (mouse->obstacle == Obstacle::none) {
        co_await monitor->readBattery(mouse->device, deadline);
    }
    const auto &listed = monitor->connectedDevices();
    const auto device = std::ranges::find(listed, mouse->device);
    if (device == listed.end() || isGone(mouse->device, *monitor)) {
        co_return false;
    }
    mouse->device = *device;
    co_return true;
}

std::string noneAttached(const Options &options)
{
    return options.productID
               ? "no mouse with product ID " + productIDText(*options.productID) + " is attached"
               : "no supported mouse is attached";
}

std::variant<ListedMouse, Failure> chooseMouse(Session *session)
{
    const auto mice = listMice(session);
    const auto mouse =
        std::ranges::find_if(mice, [](const auto &listed) { return listed.device.isConfigurable(); });
    if (mouse != mice.end() && mouse->obstacle == Obstacle::none) {
        return *mouse;
    }
    if (mouse != mice.end() && mouse->obstacle == Obstacle::permission) {
        return forbidden(*mouse, mice);
    }
    if (mice.empty() && !session->monitor().isMonitoring()) {
        return noView;
    }
    std::string message = mice.empty() ? noneAttached(session->options()) : "no mouse to configure";
    for (const auto &listed : mice) {
        message += "\n" + title(listed.device) + ": " + std::string(tableRow(listed.obstacle).text);
    }
    return Failure{Code::noMouse, message,
                   "\"kelmothctl doctor\" looks closer; \"kelmothctl --simulate basilisk-v3 COMMAND\" works "
                   "without a mouse."};
}

} // namespace kelmoth
