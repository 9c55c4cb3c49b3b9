#pragma once

#include "CLI/Failure.h"
#include "Core/HID/HIDMonitor.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kelmoth {

/// A listed mouse, and whether this user can configure it now.
struct MouseSummary {
    RazerDevice device;
    std::string path;         ///< of its device node; empty once the mouse has gone
    std::string reason;       ///< why it cannot be configured; empty when it can
    bool isForbidden = false; ///< the reason is a lack of permission

    bool isConfigurable() const { return reason.empty(); }
};

/// The mice that the monitor lists, in attach order. Opens device nodes, sends nothing.
std::vector<MouseSummary> summarizeMice(const HIDMonitor &monitor);

/// Whether a mouse has been pulled out. The system may not have told the monitor yet.
bool isGone(const RazerDevice &device, const HIDMonitor &monitor);

/// The same mice as the monitor lists them now; those that have gone are left out.
std::vector<MouseSummary> relisted(std::vector<MouseSummary> mice, const HIDMonitor &monitor);

/// What does not change of a mouse while it is attached: who it is, and where.
nlohmann::ordered_json identityJSON(const MouseSummary &mouse);

/// The members that stand for a mouse in lists and events.
nlohmann::ordered_json mouseJSON(const RazerDevice &device, const std::string &path);

/// The same with whether it can be configured.
nlohmann::ordered_json mouseJSON(const MouseSummary &mouse);

/// "78 %", "78 % (charging)", "unknown" before it has been read, "-" where there is no battery to read.
std::string batteryText(const RazerDevice &device);

/// "0x00AA"
std::string productIDText(std::uint16_t productID);

/// What the user is told when the system gives no way to find mice.
inline constexpr std::string_view noView = "the system does not show its mice";

/// "no supported mouse is attached", or that none with this product ID is.
std::string noneAttached(std::optional<std::uint16_t> productID);

/// The mouse to talk to: the first of a kind that can be configured, as the manager of its settings chooses,
/// if it can be opened. `productID` is what the user asked for, to be named where there is none.
std::variant<MouseSummary, Failure> chooseMouse(const HIDMonitor &monitor,
                                                std::optional<std::uint16_t> productID);

} // namespace kelmoth
