#include "bench/benchdata.h"
#include "bench/plainsqlite.h"
#include "bench/registration.h"
#include "data/servicerecordstore.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int batchSize = 500;

/// Half of the records are in the service log already, the others are new.
QVector<RemoteServiceRecord> batch()
{
    QVector<RemoteServiceRecord> records;
    for (int i = 0; i < batchSize; ++i) {
        RemoteServiceRecord record;
        record.remoteId = 10000000 + i;
        record.carId = 1 + i % journalShape.cars;
        record.opId = 1 + i % journalShape.operations;
        record.opTime = QStringLiteral("2026-11-01T12:%1:00.000Z").arg(i % 60, 2, 10, QLatin1Char('0'));
        record.personId = 1 + i % 25;
        record.personName = QStringLiteral("Механик Иван Петрович");
        record.comment = QStringLiteral("Замена по регламенту");
        record.localId = i % 2 == 0 ? 1 + i : -1;
        records.append(record);
    }
    return records;
}

enum class RemoteIdIndex { Present, Missing };

/// Each iteration starts from the same service log, and neither side waits for the disk.
class Journal final
{
public:
    Journal(const BenchShape &shape, RemoteIdIndex index) : home(shape), m_database(home.databasePath())
    {
        m_database.exec("PRAGMA synchronous=OFF");
        if (index == RemoteIdIndex::Missing)
            m_database.exec("DROP INDEX IF EXISTS maintainance_by_remote_id");
        else
            createIndex();
        clear();
    }
    ~Journal()
    {
        createIndex();
        clear();
    }
    void clear() { m_database.exec("DELETE FROM maintainance WHERE remote_id>=10000000"); }

    const BenchHome home;

private:
    void createIndex()
    {
        m_database.exec("CREATE INDEX IF NOT EXISTS maintainance_by_remote_id ON maintainance (remote_id)");
    }

    PlainSqlite m_database;
};

void garageBatch(benchmark::State &state, const BenchShape &shape, RemoteIdIndex index)
{
    Journal journal(shape, index);
    journal.home.enter();
    const QVector<RemoteServiceRecord> records = batch();
    GarageDatabase database(QStringLiteral("bench"));
    ServiceRecordStore::storeRemote(database, {}); // the first write sets it
    database.run(QStringLiteral("PRAGMA synchronous=OFF"));
    for (auto _ : state) {
        ServiceRecordStore::storeRemote(database, records);
        state.PauseTiming();
        journal.clear();
        state.ResumeTiming();
    }
}

void plainBatch(benchmark::State &state, const BenchShape &shape, RemoteIdIndex index)
{
    Journal journal(shape, index);
    const QVector<RemoteServiceRecord> records = batch();
    PlainSqlite database(journal.home.databasePath());
    database.exec("PRAGMA synchronous=OFF");
    const auto bindText = [](sqlite3_stmt *statement, int place, const QString &text) {
        sqlite3_bind_text16(statement, place, text.utf16(), int(text.size()) * int(sizeof(QChar)),
                            SQLITE_STATIC);
    };
    // The places are those of each statement's placeholders in the order of their first use.
    const auto bindUpdate = [&](sqlite3_stmt *update, const RemoteServiceRecord &record) {
        sqlite3_bind_int(update, 1, record.carId);
        sqlite3_bind_int(update, 2, record.opId);
        bindText(update, 3, record.opTime);
        sqlite3_bind_int(update, 4, record.personId);
        bindText(update, 5, record.personName);
        bindText(update, 6, record.comment);
        sqlite3_bind_int64(update, 7, record.remoteId);
        sqlite3_bind_int(update, 8, record.localId);
    };
    const auto bindInsert = [&](sqlite3_stmt *insert, const RemoteServiceRecord &record) {
        sqlite3_bind_int64(insert, 1, record.remoteId);
        sqlite3_bind_int(insert, 2, record.carId);
        sqlite3_bind_int(insert, 3, record.opId);
        bindText(insert, 4, record.opTime);
        sqlite3_bind_int(insert, 5, record.personId);
        bindText(insert, 6, record.personName);
        bindText(insert, 7, record.comment);
    };
    for (auto _ : state) {
        database.exec("BEGIN IMMEDIATE");
        {
            const auto update = database.prepare(remoteStatements().at(0).c_str());
            const auto insert = database.prepare(remoteStatements().at(1).c_str());
            for (const RemoteServiceRecord &record : records) {
                bindUpdate(update.get(), record);
                if (database.write(update.get()) != 0)
                    continue;
                bindInsert(insert.get(), record);
                database.write(insert.get());
            }
        }
        database.exec("COMMIT");
        state.PauseTiming();
        journal.clear();
        state.ResumeTiming();
    }
}

} // namespace

void registerRemoteBenchmarks()
{
    const auto add = [](const char *name, auto run, RemoteIdIndex index) {
        benchmark::RegisterBenchmark(name, run, journalShape, index)
            ->Unit(benchmark::kMillisecond)
            ->MeasureProcessCPUTime();
    };
    add("remote/journal/plain", plainBatch, RemoteIdIndex::Present);
    add("remote/journal/garage", garageBatch, RemoteIdIndex::Present);
    add("remote/journal-no-index/plain", plainBatch, RemoteIdIndex::Missing);
    add("remote/journal-no-index/garage", garageBatch, RemoteIdIndex::Missing);
}
