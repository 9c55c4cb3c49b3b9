#pragma once

#include "CLI/MouseSummary.h"
#include "CLI/Terminal.h"
#include "Core/HID/DeviceReader.h"

#include <nlohmann/json.hpp>

#include <string>

namespace kelmoth {

/// What a mouse said of its settings, for people. What it did not answer is shown as such.
std::string renderReading(const MouseSummary &mouse, const DeviceReading &reading, const Terminal &terminal);

/// The same for programs: null where the mouse did not answer, and a list of what that concerns.
nlohmann::ordered_json readingJSON(const MouseSummary &mouse, const DeviceReading &reading);

} // namespace kelmoth
