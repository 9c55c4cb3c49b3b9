#pragma once

#include "Core/HID/DeviceManager.h"

#include <QCoroTask>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace kelmoth {

/// One kind of change that "kelmothctl set" makes: what the command line asks for, and how the owner of the
/// settings is asked to do it. Main thread.
class SettingChange {
public:
    virtual ~SettingChange() = default;

    /// The word on the command line.
    virtual std::string_view name() const = 0;

    /// One line for the list of changes.
    virtual std::string_view summary() const = 0;

    /// Declares operands and options; they are set when any of the following is called.
    virtual void declare(CLI::App &parser) = 0;

    /// What of the change this model does not know, and what it does; none when nothing is wrong.
    virtual std::optional<std::string> objection(const RazerDevice &device) const = 0;

    /// What of the change does not fit what a mouse that has been read holds; none when nothing is wrong.
    virtual std::optional<std::string> misfit(const DeviceState &) const { return std::nullopt; }

    /// Whether the mouse has left unanswered what the change would have to leave as it is.
    virtual bool isBlind(const UnansweredItems &unanswered) const = 0;

    /// Writes the change to the mouse, which has been read. True when the mouse has taken it.
    virtual QCoro::Task<bool> apply(DeviceManager &manager) = 0;

    /// What holds once it has: "DPI of stage 2 is now 900".
    virtual std::string outcome(const DeviceManager &manager) const = 0;

    /// Takes what has been changed out of what the mouse was not heard to say.
    virtual void settle(UnansweredItems &unanswered) const = 0;
};

using SettingChanges = std::vector<std::unique_ptr<SettingChange>>;

/// Every kind of change, in the order in which the help lists them.
SettingChanges allSettingChanges();

} // namespace kelmoth
