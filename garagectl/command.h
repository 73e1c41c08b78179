#pragma once

#include "garagectl/exitcode.h"

#include <QString>

namespace CLI {
class App;
}

/// One sub-command. Each is a file pair in commands/ and one line of commandlist.cpp.
class Command
{
    Q_DISABLE_COPY(Command)
public:
    Command() = default;
    virtual ~Command() = default;

    /// Adds the command and its options to the command line. The values of the options are kept in this
    /// object.
    virtual CLI::App *addTo(CLI::App &program) = 0;
    /// Called if the command was chosen, with its options set. Throws Failure.
    virtual ExitCode run(const QString &databasePath) = 0;
};
