#pragma once

#include "CLI/Command.h"
#include "CLI/Mice.h"

namespace kelmoth {

/// The mouse that a command works with.
struct Mouse {
    Session *session;
    ListedMouse listed;
    DeviceReading reading = {}; ///< what it said of its settings; empty where that was not asked for

    const RazerDevice &device() const { return listed.device; }

    /// Why a change was not made; none when it was.
    std::optional<Failure> failureOf(const WriteResult &result) const;
};

/// A command that works with one mouse: chooses and opens it, reads it, and says why not, once.
class MouseCommand : public Command {
public:
    /// What happens before the work: nothing, a full read, or that with nobody else changing settings from
    /// then on until the end.
    enum class Need { none, reading, changing };

    MouseCommand(const Text &text, Need need) : Command(text), m_need(need) {}

    QCoro::Task<ExitStatus> run(Session *session) final;

protected:
    /// What is wrong before any mouse is looked for.
    virtual std::optional<Failure> prepare() { return std::nullopt; }

    /// What is wrong before the mouse is asked for anything.
    virtual std::optional<Failure> objection(Mouse *) { return std::nullopt; }

    /// The work. What it prints of a failure itself stays the only thing that is printed.
    virtual QCoro::Task<std::optional<Failure>> work(Mouse *mouse) = 0;

private:
    QCoro::Task<std::optional<Failure>> perform(Mouse *mouse);

    Need m_need;
};

} // namespace kelmoth
