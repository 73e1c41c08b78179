#include "garagectl/backup/checkedcopy.h"

#include "garagectl/database/readonlyfile.h"
#include "garagectl/database/select.h"
#include "garagectl/output/progress.h"
#include "garagectl/wording.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <algorithm>

namespace {

constexpr int mostCopies = 5;

[[noreturn]] void fail(ExitCode code, const QString &message)
{
    throw Failure {code, message};
}

void requireWhole(const GarageDatabase &database, const QString &path)
{
    ReadOnlyFile::requireTables(database, FileProof::garageTables());
    const QStringList faults = FileProof::faults(database);
    if (!faults.isEmpty())
        fail(ExitCode::NoDatabase,
             text("%1 is damaged: %2", "%1 повреждена: %2").arg(path, faults.first().simplified()));
}

/// True if the failure is that of the file that is written.
bool isOfTheCopy(const QSqlError &error)
{
    // https://www.sqlite.org/rescode.html
    constexpr int primaryCodeMask = 0xff;
    constexpr int inputOutput = 10;
    constexpr int full = 13;
    constexpr int cannotOpen = 14;
    const int code = error.nativeErrorCode().toInt() & primaryCodeMask;
    return code == inputOutput || code == full || code == cannotOpen;
}

QSqlError vacuumInto(const GarageDatabase &database, const QString &path)
{
    QSqlQuery query = database.newQuery();
    if (query.prepare(QStringLiteral("VACUUM INTO :path"))) {
        query.bindValue(QStringLiteral(":path"), path);
        if (query.exec())
            return {};
    }
    return query.lastError();
}

/// A host that writes without a pause leaves only moments, as for ReadOnlyFile::read().
void copyInto(const GarageDatabase &database, const QString &path)
{
    constexpr qint64 patienceMs = 5000;
    constexpr unsigned long retryIntervalMs = 3;
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        QFile::remove(path);
        const QSqlError error = vacuumInto(database, path);
        if (!error.isValid())
            return;
        if (isOfTheCopy(error))
            fail(ExitCode::NotWritten,
                 text("the copy could not be written in %1: %2", "копия в %1 не записана: %2")
                     .arg(QFileInfo(path).path(), error.databaseText()));
        if (!isBusy(error) || timer.hasExpired(patienceMs))
            throw error;
        QThread::msleep(retryIntervalMs);
    }
}

/// While the copy was made, others may have added and deleted rows.
struct Original
{
    QVector<FileProof::TableRows> before;
    QVector<FileProof::TableRows> after;

    bool mayHave(const QVector<FileProof::TableRows> &copied) const
    {
        if (copied.size() != before.size() || copied.size() != after.size())
            return false;
        for (int i = 0; i < copied.size(); ++i) {
            const auto range = std::minmax(before.at(i).rows, after.at(i).rows);
            const bool isSame = copied.at(i).table == before.at(i).table && copied.at(i).rows >= range.first
                && copied.at(i).rows <= range.second;
            if (!isSame)
                return false;
        }
        return true;
    }
};

Original copyOnce(const QString &databasePath, const QString &copyPath, Progress &progress)
{
    Original original;
    ReadOnlyFile::read(databasePath, [&](const GarageDatabase &database) {
        progress.setTask(text("checking the database", "проверяется база"));
        requireWhole(database, databasePath);
        original.before = FileProof::rowCounts(database);
        progress.setTask(text("copying", "копируется"));
        database.run(QStringLiteral("COMMIT")); // VACUUM works outside a transaction only
        copyInto(database, copyPath);
    });
    ReadOnlyFile::read(databasePath, [&original](const GarageDatabase &database) {
        original.after = FileProof::rowCounts(database);
    });
    return original;
}

} // namespace

CheckedCopy::Proof CheckedCopy::prove(const QString &path)
{
    Proof proof;
    ReadOnlyFile::read(path, [&](const GarageDatabase &database) {
        requireWhole(database, path);
        proof = {QFileInfo(path).size(), FileProof::rowCounts(database)};
    });
    return proof;
}

CheckedCopy::Proof CheckedCopy::write(const QString &databasePath, const QString &copyPath,
                                      Progress &progress)
{
    for (int i = 0; i < mostCopies; ++i) {
        const Original original = copyOnce(databasePath, copyPath, progress);
        progress.setTask(text("checking the copy", "проверяется копия"));
        const Proof proof = prove(copyPath);
        if (original.mayHave(proof.tables))
            return proof;
    }
    fail(ExitCode::NoDatabase,
         text("the copy of %1 does not have its rows; no backup was made",
              "в копии %1 строк не столько, сколько в базе; копия не сохранена")
             .arg(databasePath));
}
