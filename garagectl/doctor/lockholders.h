#pragma once

#include "garagectl/findings/finding.h"

/// The locks of other processes on a database.
namespace LockHolders {

/// "1234 (name), write lock": one for each kind of lock that is held now. Must not be called while this
/// process has a connection to the file.
QStringList now(const QString &databasePath);

/// The finding that a lock is held for longer than a commit takes; empty: none.
Findings check(const QString &databasePath);

} // namespace LockHolders
