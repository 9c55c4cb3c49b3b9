#pragma once

#include "CLI/Mice.h"

namespace kelmoth {

/// "0x00AA"
std::string productIDText(std::int64_t productID);

/// "Razer Basilisk V3 (0x0099)"
std::string title(const RazerDevice &device);

/// "78 %", "78 % (charging)", "unknown" before it has been read, "-" where there is no battery to read.
std::string batteryText(const RazerDevice &device);

/// The member "device" of what programs are told: who a mouse is, and where.
nlohmann::ordered_json deviceJSON(const RazerDevice &device, const std::string &path);

/// The member "battery"; null where there is none or it did not say.
nlohmann::ordered_json batteryJSON(const RazerDevice &device);

/// The members "configurable" and "reason" with these two.
nlohmann::ordered_json mouseJSON(const ListedMouse &mouse);

} // namespace kelmoth
