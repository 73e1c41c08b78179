#pragma once

#include "host/database/datafolder.h"

#include <QString>

/// The host's side of the shared database file: it owns the file and its schema.
namespace HostDatabase {

/// Creates the folder, the file and the missing tables. An error text, or empty.
QString prepare(const DataFolder &home);

/// True if every shared table is empty. False if the file cannot be read.
bool isBlank(const DataFolder &home);

} // namespace HostDatabase
