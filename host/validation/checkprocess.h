#pragma once

#include "host/database/datafolder.h"
#include "host/validation/check.h"

/// The outcome of one check.
struct CheckResult
{
    enum Outcome { Passed, Failed, Skipped };
    static constexpr std::size_t OutcomeCount = 3;

    Outcome outcome = Failed;
    QString reason; // empty if passed
    qint64 milliseconds = 0;
};

/// Each check runs in a process and a data folder of its own: a plug-in that crashes or hangs ends only its
/// check.
namespace CheckProcess {

/// Starts this program for the check and waits for its end; kills it after `limitMilliseconds`.
CheckResult run(const Check &check, const QString &library, const QString &language, int limitMilliseconds);

/// Called in that process: runs the check and writes its result into the folder. Needs the application
/// object. Returns an exit code.
int runHere(const Check &check, const QString &library, const DataFolder &folder);

} // namespace CheckProcess
