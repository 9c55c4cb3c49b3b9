#pragma once

#include "CLI/MouseCommand.h"
#include "Core/Device/SettingsFile.h"

#include <functional>

namespace kelmoth {

/// A setting that differs between a record and a mouse.
struct SettingStep {
    enum class Part { dpi, lighting, buttons, liftOff, rest };
    enum class Kind {
        write,       ///< to be written
        unsupported, ///< skipped: the mouse does not support it
        unanswered,  ///< skipped: the current value is unknown
    };
    Part part = Part::rest;
    std::string setting;         ///< "DPI of stage 2"
    nlohmann::ordered_json from; ///< a number or a text; null: none or unknown
    nlohmann::ordered_json to;   ///< the same, from the record
    Kind kind = Kind::write;
    // g++ warns of members that are left out and have no initializer.
    // NOLINTBEGIN(readability-redundant-member-init)
    std::string reason = {}; ///< why it is skipped; empty: see the kind
    std::function<QCoro::Task<WriteResult>(DeviceManager &)> write = {}; ///< of the kind `write` only
    // NOLINTEND(readability-redundant-member-init)
};

/// Result of a step.
struct StepResult {
    const char *word = "done"; ///< or "failed" or "unsupported"
    // NOLINTNEXTLINE(readability-redundant-member-init): lets initializers omit it
    std::string reason = {};
};

/// Every setting of a file, which may hold any values, that differs from the mouse: DPI of the stages, the
/// active stage, lighting, buttons, lift-off distance, and settings without a command.
std::vector<SettingStep> planSettings(const SettingsFile &file, const DeviceReading &mouse,
                                      const RazerDevice &device);

/// Executes the steps, prints the result of each, and saves. None on success, else the failure.
QCoro::Task<std::optional<Failure>> takeSteps(std::vector<SettingStep> steps, Mouse *mouse);

} // namespace kelmoth
