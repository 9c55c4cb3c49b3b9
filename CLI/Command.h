#pragma once

#include "CLI/Failure.h"

#include <QCoroTask>

#include <memory>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace kelmoth {

class Session;

/// One verb of kelmothctl. To add one, add a file in CLI/Commands and a line in each of the two lists below.
class Command {
public:
    /// The help of a command.
    struct Text {
        std::string_view name;      ///< the word on the command line
        std::string_view summary;   ///< one line for the list of commands
        std::string_view details;   ///< printed below its options: what it does, examples
        bool hasVocabulary = false; ///< the help also lists the words of the settings
    };

    explicit Command(const Text &text) : m_text(text) {}
    virtual ~Command() = default;

    const Text &text() const { return m_text; }

    /// Adds its options, operands and verbs; they are set when `run` starts.
    virtual void declare(CLI::App &) {}

    /// Runs the command. The session outlives it. Main thread, within the event loop.
    virtual QCoro::Task<ExitStatus> run(Session *session) = 0;

private:
    Text m_text;
};

using CommandPointer = std::unique_ptr<Command>;
using Commands = std::vector<CommandPointer>;
using CommandFactory = CommandPointer (*)();

extern const CommandFactory listCommand, readCommand, getCommand, setCommand, resetCommand, exportCommand,
    importCommand, watchCommand, doctorCommand;

/// Every command, in the order in which the help lists them.
inline Commands allCommands()
{
    Commands commands;
    for (const auto make : {listCommand, readCommand, getCommand, setCommand, resetCommand, exportCommand,
                            importCommand, watchCommand, doctorCommand}) {
        commands.push_back(make());
    }
    return commands;
}

} // namespace kelmoth
