#include "garagectl/commandlist.h"

#include "garagectl/commands/historycommand.h"

std::vector<std::unique_ptr<Command>> makeCommands()
{
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<HistoryCommand>());
    return commands;
}
