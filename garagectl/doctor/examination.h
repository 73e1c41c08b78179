#pragma once

#include "garagectl/findings/finding.h"

class Progress;

/// Looks for everything that can be wrong with a database and its place. A file that is missing, damaged or
/// locked is a finding, too. Each check reads on its own, so that a host can commit in between.
Findings examine(const QString &databasePath, Progress &progress);
