#pragma once

#include "garagectl/command.h"

#include <memory>
#include <vector>

/// All commands, in the order in which the help lists them.
std::vector<std::unique_ptr<Command>> makeCommands();
