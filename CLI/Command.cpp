#include "CLI/Command.h"

#include "CLI/DoctorCommand.h"
#include "CLI/ListCommand.h"
#include "CLI/ReadCommand.h"
#include "CLI/WatchCommand.h"

namespace kelmoth {

void Command::declare(CLI::App &) {}

Commands allCommands()
{
    Commands commands;
    commands.push_back(std::make_unique<ListCommand>());
    commands.push_back(std::make_unique<ReadCommand>());
    commands.push_back(std::make_unique<WatchCommand>());
    commands.push_back(std::make_unique<DoctorCommand>());
    return commands;
}

} // namespace kelmoth
