#pragma once

#include "CLI/ExitStatus.h"

#include <QCoroTask>

#include <memory>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace kelmoth {

class Session;

/// One verb of kelmothctl. Adding one: a class of this kind in a file of its own, and a line in
/// `allCommands`.
class Command {
public:
    virtual ~Command() = default;

    /// The word on the command line.
    virtual std::string_view name() const = 0;

    /// One line for the list of commands.
    virtual std::string_view summary() const = 0;

    /// What the command's own help says below its options: what it does, an example.
    virtual std::string_view details() const = 0;

    /// Declares options, operands and further verbs of its own; they are set when `run` begins.
    virtual void declare(CLI::App &parser);

    /// Does the work. The session outlives it. Main thread, within the event loop.
    virtual QCoro::Task<ExitStatus> run(Session *session) = 0;
};

using Commands = std::vector<std::unique_ptr<Command>>;

/// Every command, in the order in which the help lists them.
Commands allCommands();

} // namespace kelmoth
