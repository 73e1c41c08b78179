#pragma once

#include "data/garagedatabase.h"
#include "garagectl/exitcode.h"

#include <QStringList>

#include <functional>

/// Reading of a database file that leaves file and folder as they are, while others use them or not.
namespace ReadOnlyFile {

enum Problem {
    Missing,
    NotAFile,
    NotReadable, ///< by this user
    Empty,
    NotADatabase,
    Locked, ///< by another program, for longer than a reading waits
    UnfinishedWrite, ///< only a connection that may write can complete or undo it
    Damaged,
    KeepsChanging,
    WrongStatement, ///< it names a table or a column that does not exist
    OtherProblem
};

/// Why a file could not be read. Its code is NoDatabase.
struct ReadFailure : Failure
{
    Problem problem = OtherProblem;
};

/// May throw the QSqlError of a statement that failed.
using Reading = std::function<void(const GarageDatabase &database)>;

/// Opens the file, runs the reading inside one transaction, and closes the file again. Waits up to 5 s for a
/// writer. The reading runs again if the file changed meanwhile in a way that its transaction cannot hide, so
/// it must start afresh each time. Throws ReadFailure if the file is missing, is no database or cannot be
/// read now, and if a statement of the reading failed. Statements are interrupted while the condition holds.
void read(const QString &path, const Reading &reading,
          const StatementInterrupter::Condition &interruption = {});

/// Throws Failure if one of these tables is missing.
void requireTables(const GarageDatabase &database, const QStringList &tables);

} // namespace ReadOnlyFile
