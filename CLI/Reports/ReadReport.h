#pragma once

#include "CLI/MouseCommand.h"
#include "Core/Device/LiftOffLevel.h"

namespace kelmoth {

/// What a mouse said of its settings, for people. What it did not answer is shown as such.
std::string renderReading(const Mouse &mouse);

/// The same for programs: null where the mouse did not answer, and a list of what that concerns.
nlohmann::ordered_json readingJSON(const Mouse &mouse);

/// What the mouse was asked and did not answer, each in words.
Words unansweredWords(const Mouse &mouse);

/// A brightness in percent, rounded as little as brings the same byte to the mouse when it is set again:
/// "11.4", "100".
double percentOf(double brightness);

/// "static #00ff00, 100 %"
std::string lightText(const RGBSetting &setting);

/// The word for a lift-off level, 0 to 2.
inline std::string liftOffWord(Int level)
{
    return wordOf(static_cast<LiftOffLevel>(level));
}

} // namespace kelmoth
