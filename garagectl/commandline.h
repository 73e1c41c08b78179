#pragma once

#include "garagectl/exitcode.h"

/// Reads the arguments and runs the command that they name. The failure of a command is reported on standard
/// error.
ExitCode runCommandLine(int argc, const char *const *argv);
