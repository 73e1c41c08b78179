#pragma once

/// What the program's exit code says to a script.
enum ExitCode {
    Ok = 0,
    BadUsage = 1, // unknown or contradictory options
    NoPlugin = 2, // the library does not load or is no plug-in of this host
    NoDatabase = 3, // the database file cannot be made, opened or filled
    NoAnswer = 4, // the plug-in owed an answer for too long
    BadInput = 5, // some lines were not messages; the others were handed over
    Cancelled = 6, // somebody stopped a long job
    ValidationFailed = 7, // the plug-in did not pass a check
    NoPicture = 8 // a screenshot could not be written
};
