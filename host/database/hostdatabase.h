#pragma once

#include "host/database/datafolder.h"

#include <QString>

/// The host's side of the shared database file: it owns the file and its schema.
namespace HostDatabase {

/// Makes the folder, the file and whatever tables are missing. An error text, or empty.
QString prepare(const HostHome &home);

/// True if nothing has been put into the file yet. Without its cars a used file is not blank.
bool isBlank(const HostHome &home);

} // namespace HostDatabase
