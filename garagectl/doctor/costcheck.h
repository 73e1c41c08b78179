#pragma once

#include "garagectl/findings/finding.h"

struct CostLimits
{
    qint64 notableMs = 1000; ///< a statement that takes less is not worth mentioning
    qint64 longestMs = 10000; ///< after which a statement is stopped
};

/// What the module's own statements cost: their plans, and their times. Throws Failure as
/// ReadOnlyFile::read() does.
Findings checkCost(const QString &databasePath, const CostLimits &limits = {});
