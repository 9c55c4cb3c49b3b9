#pragma once

#include "CLI/MouseCommand.h"

namespace kelmoth {

/// What a mouse said of its settings, for people. What it did not answer is shown as such.
std::string renderReading(const Mouse &mouse);

/// The same for programs: null where the mouse did not answer, and a list of what that concerns.
nlohmann::ordered_json readingJSON(const Mouse &mouse);

/// What the mouse was asked and did not answer, each in words.
Words unansweredWords(const Mouse &mouse);

/// A zone's lighting for programs; null where it is not known.
nlohmann::ordered_json lightJSON(RGBZone zone, const DeviceState &state);

/// What a button does, for programs; null where it is not known.
nlohmann::ordered_json buttonJSON(MouseButton button, const DeviceState &state);

} // namespace kelmoth
