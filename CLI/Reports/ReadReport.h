#pragma once

#include "CLI/MouseCommand.h"
#include "Core/Device/LiftOffLevel.h"

namespace kelmoth {

/// The settings of a mouse as text. Marks items without an answer.
std::string renderReading(const Mouse &mouse);

/// The same as JSON: null for items without an answer, and a list of them.
nlohmann::ordered_json readingJSON(const Mouse &mouse);

/// The items that the mouse did not answer, in words.
Words unansweredWords(const Mouse &mouse);

/// A brightness in percent, with the fewest digits that give the same byte when it is set again: "11.4",
/// "100".
double percentOf(double brightness);

/// "static #00ff00, 100 %"
std::string lightText(const RGBSetting &setting);

/// The word for a lift-off level, 0 to 2.
inline std::string liftOffWord(Int level)
{
    return wordOf(static_cast<LiftOffLevel>(level));
}

} // namespace kelmoth
