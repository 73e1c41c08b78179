#include "garagectl/database/filestate.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace {

// See "Database File Format" in the documentation of SQLite.
constexpr int headerSize = 100;
constexpr int readVersionOffset = 19;
constexpr char writeAheadVersion = 2;

QByteArray signatureOf(const QString &path)
{
    struct stat file = {};
    if (stat(QFile::encodeName(path).constData(), &file) != 0)
        return "none;";
    const qint64 parts[] = {qint64(file.st_dev), qint64(file.st_ino), qint64(file.st_size),
                            qint64(file.st_mtim.tv_sec), qint64(file.st_mtim.tv_nsec)};
    QByteArray signature;
    for (const qint64 part : parts)
        signature += QByteArray::number(part) + ';';
    return signature;
}

bool isReadable(const QString &path)
{
    return access(QFile::encodeName(path).constData(), R_OK) == 0;
}

FileState::Kind kindOf(const QString &path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return FileState::Missing;
    if (!S_ISREG(status.st_mode))
        return FileState::NotAFile;
    QFile file(path);
    if (!isReadable(path) || !file.open(QIODevice::ReadOnly))
        return FileState::NotReadable;
    const QByteArray header = file.read(headerSize);
    if (header.isEmpty())
        return FileState::Empty;
    // The string of the format ends with a NUL.
    if (header.size() < headerSize || !header.startsWith(QByteArray("SQLite format 3", 16)))
        return FileState::NotADatabase;
    return header.at(readVersionOffset) == writeAheadVersion ? FileState::WriteAheadLog
                                                             : FileState::RollbackJournal;
}

} // namespace

FileState::FileState(const QString &path)
    // Before any connection: closing a file drops all locks that this process holds on it.
    : m_kind(kindOf(path))
    , m_hasLog(QFile::exists(path + QLatin1String("-wal")))
    , m_hasLogIndex(QFile::exists(path + QLatin1String("-shm")))
    , m_signature(signatureOf(path) + signatureOf(path + QLatin1String("-wal")))
{
}
