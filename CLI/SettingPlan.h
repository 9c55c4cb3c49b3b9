#pragma once

#include "CLI/MouseCommand.h"
#include "Core/Device/SettingsFile.h"

#include <functional>

namespace kelmoth {

/// A setting in which a record differs from a mouse.
struct SettingStep {
    enum class Part { dpi, lighting, buttons, liftOff, rest };
    enum class Kind {
        write,       ///< to be written
        unsupported, ///< not to be: the mouse cannot be given it
        unanswered,  ///< not to be: the mouse did not say what it has now
    };
    Part part = Part::rest;
    std::string setting;         ///< in words: "DPI of stage 2"
    nlohmann::ordered_json from; ///< a number or a text; null where the mouse has or says none
    nlohmann::ordered_json to;   ///< the same of the record
    Kind kind = Kind::write;
    // g++ warns of members that are left out and have no initializer.
    // NOLINTBEGIN(readability-redundant-member-init)
    std::string reason = {}; ///< why not; empty when that says it all
    std::function<QCoro::Task<WriteResult>(DeviceManager &)> write = {}; ///< of the kind `write` only
    // NOLINTEND(readability-redundant-member-init)
};

/// How a step went.
struct StepResult {
    const char *word = "done"; ///< or "failed" or "unsupported"
    // NOLINTNEXTLINE(readability-redundant-member-init): what leaves it out is no mistake
    std::string reason = {};
};

/// Every setting of a file, whose record may hold any values, in which it differs from what the mouse says:
/// DPI of the stages, the active stage, lighting, buttons, lift-off distance, and what no mouse can be given.
std::vector<SettingStep> planSettings(const SettingsFile &file, const DeviceReading &mouse,
                                      const RazerDevice &device);

/// Takes the steps, prints how each went, and saves. The failure when not all of it went well.
QCoro::Task<std::optional<Failure>> takeSteps(std::vector<SettingStep> steps, Mouse *mouse);

} // namespace kelmoth
