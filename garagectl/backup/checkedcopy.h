#pragma once

#include "garagectl/database/fileproof.h"

#include <QString>

class Progress;

/// Copies of a database that are proved before they count.
namespace CheckedCopy {

struct Proof
{
    qint64 bytes = 0;
    QVector<FileProof::TableRows> tables;
};

/// Proves that a file is a whole garage database. Throws Failure (NoDatabase) if it is not.
Proof prove(const QString &path);

/// Proves the database, copies it while others use it, and proves the copy, which must have the rows of the
/// original. Throws Failure, and then leaves no file, if the original or the copy is not whole (NoDatabase),
/// or if the copy could not be written (NotWritten).
Proof write(const QString &databasePath, const QString &copyPath, Progress &progress);

} // namespace CheckedCopy
