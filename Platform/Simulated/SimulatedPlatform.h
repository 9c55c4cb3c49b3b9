#pragma once

#include "Platform/HID.h"
#include "Platform/Simulated/SimulatedMouse.h"
#include "Platform/USB.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelmoth {

struct Platform;

/// Simulated mice behind the doors through which a program reaches real ones.
struct SimulatedMachine {
    std::vector<std::shared_ptr<SimulatedMouse>> mice; ///< to pull out, put back and disturb
    std::shared_ptr<HIDService> hid;
    std::shared_ptr<USBService> usb;
};

/// A machine with these mice plugged in, in this order. Main thread; it takes over their attachment
/// callbacks.
SimulatedMachine simulatedMachine(std::vector<std::shared_ptr<SimulatedMouse>> mice);

/// The machine of a command-line list "MODEL[,MODEL…]", in real time. None for a list with a word that names
/// no model, an empty one included; `failure`, when given, then says which and what is allowed. Main thread.
std::optional<SimulatedMachine> simulatedMachine(std::string_view list, std::string *failure = nullptr);

/// Puts the machine of such a list in the place of the real mice of a platform. False, and nothing done, for
/// a list that is wrong; `failure` says how. Main thread.
bool simulateMice(std::string_view list, Platform &platform, std::string *failure);

} // namespace kelmoth
