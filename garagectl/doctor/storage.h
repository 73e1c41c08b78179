#pragma once

#include "garagectl/database/filestate.h"
#include "garagectl/findings/finding.h"

/// Where a database is stored, and what this user may do there.
struct Storage
{
    FileState::Kind kind = FileState::Missing;
    bool hasFolder = false;
    bool mayWriteFile = false;
    bool mayWriteFolder = false;
    QStringList folders; ///< absolute paths, from the file's folder upwards
    QString synchronisedFolder; ///< that of the above which another program keeps in step; empty: none
    QString fileSystem; ///< name of its type, as mount prints it
    qint64 fileBytes = 0;
    qint64 logBytes = 0;
    qint64 freeBytes = 0; ///< for this user
};

namespace StorageCheck {

Storage look(const QString &databasePath);
/// True if a file of that kind can be opened as a database at all.
bool isDatabase(FileState::Kind kind);
Findings judge(const Storage &storage);

} // namespace StorageCheck
