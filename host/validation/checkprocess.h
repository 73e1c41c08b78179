#pragma once

#include "host/database/datafolder.h"
#include "host/validation/check.h"

/// What the report says of one check.
struct CheckResult
{
    enum Outcome { Passed, Failed, Skipped } outcome = Failed;
    QString reason; // empty if passed
    qint64 milliseconds = 0;
};

/// Each check has a process and a home of its own: a plug-in that crashes or hangs takes nothing with it.
namespace CheckProcess {

/// Starts this program for the check and waits for its end, at most that long.
CheckResult run(const Check &check, const QString &library, int limitMilliseconds);

/// In that process: carries out the check and leaves its result in the home. Needs the application object.
/// An exit code.
int carryOut(const Check &check, const QString &library, const HostHome &home);

} // namespace CheckProcess
