#include "data/statementinterrupter.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QVariant>

#include <sqlite3.h>

#include <array>

namespace {

// Some 0.1 ms of work.
constexpr int instructionsBetweenQuestions = 10000;

// The intervals and the limit of SQLite's own busy handler.
constexpr std::array<int, 12> lockIntervalsMs {1, 2, 5, 10, 15, 20, 25, 25, 25, 50, 50, 100};
constexpr int lockTimeoutMs = 5000;

bool usesThisSqlite(const QSqlDatabase &database)
{
    QSqlQuery query(database);
    return query.exec(QStringLiteral("SELECT sqlite_source_id()")) && query.next()
        && query.value(0).toString() == QLatin1String(sqlite3_sourceid());
}

sqlite3 *handleOf(const QSqlDatabase &database)
{
    const QVariant handle = database.driver()->handle();
    if (qstrcmp(handle.typeName(), "sqlite3*") != 0 || !usesThisSqlite(database))
        return nullptr;
    return *static_cast<sqlite3 *const *>(handle.constData());
}

} // namespace

void StatementInterrupter::install(const QSqlDatabase &database)
{
    if (!m_condition)
        return;
    if (sqlite3 *handle = handleOf(database)) {
        sqlite3_progress_handler(handle, instructionsBetweenQuestions, interruptRunning, this);
        sqlite3_busy_handler(handle, waitForLock, this);
    }
}

int StatementInterrupter::interruptRunning(void *self)
{
    return static_cast<StatementInterrupter *>(self)->m_condition() ? 1 : 0;
}

int StatementInterrupter::waitForLock(void *self, int attempt)
{
    auto *interrupter = static_cast<StatementInterrupter *>(self);
    if (attempt == 0)
        interrupter->m_waitedMs = 0;
    if (interrupter->m_waitedMs >= lockTimeoutMs || interrupter->m_condition())
        return 0;
    const int interval = lockIntervalsMs.at(qMin(std::size_t(attempt), lockIntervalsMs.size() - 1));
    sqlite3_sleep(interval);
    interrupter->m_waitedMs += interval;
    return 1;
}
