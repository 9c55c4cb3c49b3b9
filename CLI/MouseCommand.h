#pragma once

#include "CLI/Command.h"
#include "CLI/Mice.h"

namespace kelmoth {

/// The mouse of a command.
struct Mouse {
    Session *session;
    ListedMouse listed;
    DeviceReading reading = {}; ///< its settings; empty unless they were read

    const RazerDevice &device() const { return listed.device; }

    /// Why a change failed; none when it succeeded.
    std::optional<Failure> failureOf(const WriteResult &result) const;
};

/// A command for one mouse: chooses, opens and reads it, and reports the failure of that.
class MouseCommand : public Command {
public:
    /// What to do before `work`: nothing, a full read, or a full read under the change lock, which is held
    /// until the end.
    enum class Need { none, reading, changing };

    MouseCommand(const Text &text, Need need) : Command(text), m_need(need) {}

    QCoro::Task<ExitStatus> run(Session *session) final;

protected:
    /// The failure of the checks before any mouse is searched for.
    virtual std::optional<Failure> prepare() { return std::nullopt; }

    /// The failure of the checks before anything is sent to the mouse.
    virtual std::optional<Failure> objection(Mouse *) { return std::nullopt; }

    /// Does the work. If it prints a failure itself, nothing more is printed.
    virtual QCoro::Task<std::optional<Failure>> work(Mouse *mouse) = 0;

private:
    QCoro::Task<std::optional<Failure>> perform(Mouse *mouse);

    Need m_need;
};

} // namespace kelmoth
