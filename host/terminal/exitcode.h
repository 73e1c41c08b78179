#pragma once

/// The exit codes of the program.
enum ExitCode {
    Ok = 0,
    BadUsage = 1, // unknown or contradictory options
    NoPlugin = 2, // the library does not load or is no plug-in of this host
    NoDatabase = 3, // the database file cannot be made, opened or filled
    NoAnswer = 4, // the plug-in did not answer in time
    BadInput = 5, // some input lines were not messages; the others were sent
    Cancelled = 6, // the user cancelled the generation of sample data
    ValidationFailed = 7, // the plug-in did not pass a check
    NoPicture = 8, // a screenshot could not be written
    NoServer = 9 // the page could not be served at the address
};
