#pragma once

#include "garagectl/exitcode.h"

/// Parses the arguments and runs the given command. The failure of a command is reported on standard
/// error.
ExitCode runCommandLine(int argc, const char *const *argv);
