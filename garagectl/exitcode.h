#pragma once

#include <QString>

/// The exit codes of the program, for scripts.
enum class ExitCode {
    Ok = 0,
    BadUsage = 1, ///< unknown or contradictory arguments
    NoDatabase = 3, ///< the file is missing, cannot be read now, or is no database of this kind
    Found = 4, ///< something was found that the caller asked about
    NotWritten = 5 ///< the output could not be written
};

/// Thrown to end a command: `message` goes to standard error.
struct Failure
{
    ExitCode code = ExitCode::BadUsage;
    QString message;
};
