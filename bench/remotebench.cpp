#include "bench/benchdata.h"
#include "bench/plainsqlite.h"
#include "bench/registration.h"
#include "data/servicerecordstore.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int batchSize = 500;

/// Half of the records are known to the journal, the others are new; every second call removes the new ones.
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

/// Both sides start from the same journal in each iteration, and neither waits for the disk.
class Journal final
{
public:
    explicit Journal(const BenchShape &shape) : home(shape), m_database(home.databasePath())
    {
        m_database.exec("PRAGMA synchronous=OFF");
        clear();
    }
    ~Journal() { clear(); }
    void clear() { m_database.exec("DELETE FROM maintainance WHERE remote_id>=10000000"); }

    const BenchHome home;

private:
    PlainSqlite m_database;
};

void garageBatch(benchmark::State &state, const BenchShape &shape)
{
    Journal journal(shape);
    journal.home.enter();
    const QVector<RemoteServiceRecord> records = batch();
    GarageDatabase database(QStringLiteral("bench"));
    database.run(QStringLiteral("PRAGMA synchronous=OFF"));
    for (auto _ : state) {
        ServiceRecordStore::storeRemote(database, records);
        state.PauseTiming();
        journal.clear();
        state.ResumeTiming();
    }
}

void plainBatch(benchmark::State &state, const BenchShape &shape)
{
    Journal journal(shape);
    const QVector<RemoteServiceRecord> records = batch();
    PlainSqlite database(journal.home.databasePath());
    database.exec("PRAGMA synchronous=OFF");
    const auto bindText = [](sqlite3_stmt *statement, int place, const QString &text) {
        sqlite3_bind_text16(statement, place, text.utf16(), text.size() * int(sizeof(QChar)), SQLITE_STATIC);
    };
    const auto bind = [&](sqlite3_stmt *statement, const RemoteServiceRecord &record) {
        sqlite3_bind_int(statement, 1, record.remoteId);
        sqlite3_bind_int(statement, 2, record.carId);
        sqlite3_bind_int(statement, 3, record.opId);
        bindText(statement, 4, record.opTime);
        sqlite3_bind_int(statement, 5, record.personId);
        bindText(statement, 6, record.personName);
        bindText(statement, 7, record.comment);
    };
    for (auto _ : state) {
        database.exec("BEGIN IMMEDIATE");
        {
            const auto update = database.prepare(
                "UPDATE maintainance SET car_id=?2,operation_id=?3,operation_time=?4,person_id=?5,"
                "person_name=?6,comment=?7,operation_state=1 WHERE remote_id=?1 OR id=?8");
            const auto insert = database.prepare(
                "INSERT INTO maintainance (remote_id,car_id,operation_id,operation_time,person_id,"
                "person_name,comment) VALUES (?1,?2,?3,?4,?5,?6,?7)");
            for (const RemoteServiceRecord &record : records) {
                bind(update.get(), record);
                sqlite3_bind_int(update.get(), 8, record.localId);
                if (database.write(update.get()) != 0)
                    continue;
                bind(insert.get(), record);
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
    for (const auto &[name, run] :
         {std::pair("remote/journal/plain", plainBatch), {"remote/journal/garage", garageBatch}})
        benchmark::RegisterBenchmark(name, run, journalShape)
            ->Unit(benchmark::kMillisecond)
            ->MeasureProcessCPUTime();
}
