#pragma once

#include "host/database/datafolder.h"
#include "host/result.h"

/// The host's side of the shared database file: it owns the file and its schema.
namespace HostDatabase {

/// Creates the folder, the file and the missing tables. A new file, or one that is the host's alone, gets a
/// write-ahead log.
Result prepare(const DataFolder &folder);

/// As prepare(), with SQLite's default journal.
Result createTables(const DataFolder &folder);

/// True if every shared table is empty. False if the file cannot be read.
bool isBlank(const DataFolder &folder);

} // namespace HostDatabase
