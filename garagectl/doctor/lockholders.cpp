#include "garagectl/doctor/lockholders.h"

#include "garagectl/database/filestate.h"
#include "garagectl/doctor/catalogue.h"
#include "garagectl/wording.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <QVector>

#include <fcntl.h>
#include <unistd.h>

namespace {

struct Range
{
    const char *suffix; ///< of the file that carries the lock
    off_t first;
    off_t length;
    short conflicting; ///< kind of lock that would be refused
};

// See "File Locking And Concurrency" and "WAL-mode File Format" in the documentation of SQLite.
constexpr off_t pendingByte = 0x40000000;
constexpr Range pendingAndReserved {"", pendingByte, 2, F_RDLCK}; // a write
constexpr Range shared {"", pendingByte + 2, 510, F_WRLCK}; // a read, or the end of a write
constexpr Range exclusive {"", pendingByte + 2, 510, F_RDLCK};
constexpr Range logWriter {"-shm", 120, 1, F_RDLCK};

/// With a write-ahead log, every connection has the shared lock as long as it is open.
QVector<Range> rangesFor(const QString &databasePath)
{
    if (FileState(databasePath).kind() == FileState::WriteAheadLog)
        return {exclusive, logWriter};
    return {pendingAndReserved, shared};
}

QString processName(pid_t process)
{
    QFile file(QStringLiteral("/proc/%1/comm").arg(process));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

QString holderOf(const QString &databasePath, const Range &range)
{
    const QString path = databasePath + QLatin1String(range.suffix);
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return {};
    struct flock lock = {};
    lock.l_type = range.conflicting;
    lock.l_whence = SEEK_SET;
    lock.l_start = range.first;
    lock.l_len = range.length;
    const bool isKnown = fcntl(descriptor, F_GETLK, &lock) == 0;
    close(descriptor);
    if (!isKnown || lock.l_type == F_UNLCK)
        return {};
    const QString kind = lock.l_type == F_WRLCK ? text("write lock", "блокировка записи")
                                                : text("read lock", "блокировка чтения");
    return QStringLiteral("%1 (%2), %3").arg(QString::number(lock.l_pid), processName(lock.l_pid), kind);
}

} // namespace

QStringList LockHolders::now(const QString &databasePath)
{
    QStringList holders;
    for (const Range &range : rangesFor(databasePath)) {
        const QString holder = holderOf(databasePath, range);
        if (!holder.isEmpty() && !holders.contains(holder))
            holders.append(holder);
    }
    return holders;
}

Findings LockHolders::check(const QString &databasePath)
{
    constexpr qint64 longestCommitMs = 1000;
    constexpr unsigned long intervalMs = 20;
    QElapsedTimer timer;
    timer.start();
    QStringList holders = now(databasePath);
    while (!holders.isEmpty() && !timer.hasExpired(longestCommitMs)) {
        QThread::msleep(intervalMs);
        holders = now(databasePath);
    }
    if (holders.isEmpty())
        return {};
    return {DoctorCatalogue::finding("lock-held", holders.size(), holders)};
}
