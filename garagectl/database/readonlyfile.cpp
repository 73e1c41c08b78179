#include "garagectl/database/readonlyfile.h"

#include "garagectl/database/filestate.h"
#include "garagectl/wording.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>
#include <QUrl>
#include <QVariant>

namespace {

constexpr int mostReadings = 5;
constexpr qint64 patienceMs = 5000;
constexpr unsigned long retryIntervalMs = 3;

/// How to open a file so that nothing is written beside it.
struct Access
{
    QLatin1String uriQuery;
    const char *firstStatement = nullptr;
    bool hasLocks = true; ///< false: nothing keeps others from changing what is being read
};

Access accessTo(const FileState &file)
{
    // SQLite reads a log also beside a file that has none by its header.
    if (file.kind() != FileState::WriteAheadLog && !file.hasLog())
        return {QLatin1String("mode=ro")};
    // A plain read-only connection makes a log and its index where they are missing.
    if (!file.hasLog())
        return {QLatin1String("mode=ro&immutable=1"), nullptr, false};
    if (file.hasLogIndex())
        return {QLatin1String("mode=ro&readonly_shm=1")};
    // A copy whose index was left out, or of a host that crashed: with the exclusive mode SQLite keeps the
    // index in memory, and without locks that mode works on a file that cannot be written.
    return {QLatin1String("mode=ro&vfs=unix-none"), "PRAGMA locking_mode=EXCLUSIVE", false};
}

QString uriOf(const QString &path, QLatin1String query)
{
    QUrl uri = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    uri.setQuery(query);
    return QString::fromLatin1(uri.toEncoded());
}

using namespace ReadOnlyFile;

[[noreturn]] void fail(Problem problem, const QString &message)
{
    throw ReadFailure {{ExitCode::NoDatabase, message}, problem};
}

void requireDatabase(const QString &path, FileState::Kind kind)
{
    switch (kind) {
    case FileState::Missing:
        fail(Missing, text("there is no file %1", "файла %1 нет").arg(path));
    case FileState::NotAFile:
        fail(NotAFile, text("%1 is not a file", "%1 — не файл").arg(path));
    case FileState::NotReadable:
        fail(NotReadable,
             text("%1 may not be read by this user", "этому пользователю нельзя читать %1").arg(path));
    case FileState::Empty:
        fail(Empty,
             text("%1 is empty: the host has not made its tables yet",
                  "файл %1 пуст: программа хронометража ещё не создала в нём таблицы")
                 .arg(path));
    case FileState::NotADatabase:
        fail(NotADatabase, text("%1 is not an SQLite database", "%1 — не база SQLite").arg(path));
    case FileState::RollbackJournal:
    case FileState::WriteAheadLog:
        break;
    }
}

[[noreturn]] void failOn(const QSqlError &error, const QString &path)
{
    // https://www.sqlite.org/rescode.html
    constexpr int primaryCodeMask = 0xff;
    constexpr int wrongStatement = 1;
    constexpr int readOnly =
        8; // even reading would have to write: the journal of another program is left over
    constexpr int corrupt = 11;
    constexpr int notADatabase = 26;
    const int code = error.nativeErrorCode().toInt() & primaryCodeMask;
    if (isBusy(error)) {
        fail(Locked,
             text("another program keeps %1 locked; it was waited for",
                  "%1 занята другой программой, ждать дольше нельзя")
                 .arg(path));
    }
    if (code == readOnly) {
        fail(UnfinishedWrite,
             text("%1 was left in the middle of a write; start the host once, which completes or undoes it",
                  "запись в %1 оборвалась; запустите программу хронометража: она её завершит или отменит")
                 .arg(path));
    }
    if (code == notADatabase)
        fail(NotADatabase, text("%1 is not an SQLite database", "%1 — не база SQLite").arg(path));
    if (code == corrupt)
        fail(Damaged, text("%1 is damaged: %2", "%1 повреждена: %2").arg(path, error.databaseText()));
    fail(code == wrongStatement ? WrongStatement : OtherProblem,
         text("cannot read %1: %2", "не удалось прочитать %1: %2").arg(path, error.databaseText()));
}

void requireSuccess(const QSqlQuery &query, const QString &path)
{
    if (!query.isActive())
        failOn(query.lastError(), path);
}

/// Begins a transaction and takes its lock, which comes with the first read. A host that writes without a
/// pause leaves only moments between two commits, so the attempts follow each other quickly.
void beginReading(const GarageDatabase &database, const QString &path)
{
    requireSuccess(database.run(QStringLiteral("BEGIN")), path);
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        const QSqlQuery firstRead = database.run(QStringLiteral("SELECT count(*) FROM sqlite_master"));
        if (firstRead.isActive())
            return;
        if (!isBusy(firstRead.lastError()) || timer.hasExpired(patienceMs))
            failOn(firstRead.lastError(), path);
        QThread::msleep(retryIntervalMs);
    }
}

void readOnce(const QString &path, const Access &access, const Reading &reading,
              const StatementInterrupter::Condition &interruption)
{
    const GarageDatabase database(
        QStringLiteral("garagectl"), uriOf(path, access.uriQuery),
        QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=0"), interruption);
    if (!database.isOpen())
        fail(OtherProblem, text("cannot open %1", "не удалось открыть %1").arg(path));
    if (access.firstStatement)
        requireSuccess(database.run(QLatin1String(access.firstStatement)), path);
    beginReading(database, path);

    try {
        reading(database);
    } catch (const QSqlError &error) {
        failOn(error, path);
    }
    if (database.readError().isValid())
        failOn(database.readError(), path);
}

} // namespace

void ReadOnlyFile::read(const QString &path, const Reading &reading,
                        const StatementInterrupter::Condition &interruption)
{
    for (int i = 0; i < mostReadings; ++i) {
        const FileState before(path);
        requireDatabase(path, before.kind());
        const Access access = accessTo(before);
        try {
            readOnce(path, access, reading, interruption);
        } catch (const Failure &) {
            if (access.hasLocks || FileState(path) == before)
                throw;
            continue;
        }
        if (access.hasLocks || FileState(path) == before)
            return;
    }
    fail(KeepsChanging,
         text("%1 changed each time while it was read; try again",
              "%1 менялась при каждом чтении; повторите позже")
             .arg(path));
}

void ReadOnlyFile::requireTables(const GarageDatabase &database, const QStringList &tables)
{
    QStringList present;
    QSqlQuery query =
        database.run(QStringLiteral("SELECT lower(name) FROM sqlite_master WHERE type IN ('table','view')"));
    while (database.next(query))
        present.append(query.value(0).toString());
    QStringList missing;
    for (const QString &table : tables) {
        if (!present.contains(table))
            missing.append(table);
    }
    if (!missing.isEmpty()) {
        fail(OtherProblem,
             text("this is not a garage database, tables are missing: %1",
                  "это не база гаража, в ней нет таблиц: %1")
                 .arg(missing.join(QLatin1String(", "))));
    }
}
