#pragma once

#include <QByteArray>
#include <QString>

/// What a database file and its companions look like from outside, found without opening a connection.
class FileState final
{
public:
    enum Kind { Missing, NotAFile, NotReadable, Empty, NotADatabase, RollbackJournal, WriteAheadLog };

    explicit FileState(const QString &path);

    Kind kind() const { return m_kind; }
    /// With a write-ahead log: the file that holds changes which are not yet in the database.
    bool hasLog() const { return m_hasLog; }
    /// With a write-ahead log: the index that the connections of all processes share.
    bool hasLogIndex() const { return m_hasLogIndex; }

    /// True if neither the file nor its log was written or replaced between the two.
    bool operator==(const FileState &other) const { return m_signature == other.m_signature; }
    bool operator!=(const FileState &other) const { return !(*this == other); }

private:
    Kind m_kind = Missing;
    bool m_hasLog = false;
    bool m_hasLogIndex = false;
    QByteArray m_signature; ///< inode, size and modification time of both
};
