#pragma once

#include "data/garagedatabase.h"

#include <QStringList>

#include <functional>

/// Reading of a database file that leaves file and folder as they are, while others use them or not.
namespace ReadOnlyFile {

using Reading = std::function<void(const GarageDatabase &database)>;

/// Opens the file, runs the reading inside one transaction, and closes the file again. Waits up to 5 s for a
/// writer. The reading runs again if the file changed meanwhile in a way that its transaction cannot hide, so
/// it must start afresh each time. Throws Failure (NoDatabase) if the file is missing, is no database or
/// cannot be read now, and if a statement of the reading failed.
void read(const QString &path, const Reading &reading);

/// Throws Failure if one of these tables is missing.
void requireTables(const GarageDatabase &database, const QStringList &tables);

} // namespace ReadOnlyFile
