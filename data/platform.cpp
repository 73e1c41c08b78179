#include "data/platform.h"

#include <QtGlobal>

// The tests define GARAGE_WITHOUT_POSIX to run the fallback on any system.
#if defined(Q_OS_UNIX) && !defined(GARAGE_WITHOUT_POSIX)

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

std::optional<Platform::FileIdentity> Platform::identityOfFile(const QString &path)
{
    struct stat file = {};
    if (stat(QFile::encodeName(path).constData(), &file) != 0)
        return std::nullopt;
    return FileIdentity(file.st_dev, file.st_ino);
}

bool Platform::mayWriteFile(const QString &path)
{
    return faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) == 0;
}

#else

#include <QDateTime>
#include <QFileInfo>
#include <QHash>

std::optional<Platform::FileIdentity> Platform::identityOfFile(const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists())
        return std::nullopt;
    const QDateTime created = file.birthTime();
    // The canonical path differs when a link is changed to another file.
    return FileIdentity(created.isValid() ? created.toMSecsSinceEpoch() : 0, qHash(file.canonicalFilePath()));
}

bool Platform::mayWriteFile(const QString &path)
{
    return QFileInfo(path).isWritable();
}

#endif
