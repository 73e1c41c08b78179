#include "bench/benchdata.h"
#include "bench/instructioncount.h"
#include "bench/plainqt.h"
#include "bench/plainsqlite.h"
#include "bench/registration.h"
#include "data/garageupdater.h"

#include <benchmark/benchmark.h>

#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

namespace {

void plainReload(benchmark::State &state, const BenchShape &shape)
{
    const BenchHome home(shape);
    PlainSqlite database(home.databasePath());
    database.exec("PRAGMA encoding=UTF8");
    const InstructionCount count;
    for (auto _ : state) {
        for (const std::string &statement : reloadStatements())
            benchmark::DoNotOptimize(database.readAll(statement.c_str()));
    }
}

/// From the request of a reload to the arrival of the records in the requesting thread.
void garageReload(benchmark::State &state, const BenchShape &shape)
{
    const BenchHome home(shape);
    home.enter();
    GarageUpdater loader;
    QEventLoop loop;
    QObject::connect(&loader, &GarageUpdater::garageStatsUpdated, &loop, [&loop] { loop.quit(); });
    QObject::connect(&loader, &GarageUpdater::pluginSignal, &loop,
                     [&state](const QString &, const QString &, const QJsonObject &message) {
                         state.counters["pending"] =
                             double(message.value(QLatin1String("servicePendingList")).toArray().size());
                     });
    const InstructionCount count;
    for (auto _ : state) {
        QMetaObject::invokeMethod(&loader, &GarageUpdater::reloadStats, Qt::QueuedConnection);
        loop.exec();
    }
}

/// A connection of QtSql, opened without the module.
class SqlConnection final
{
    Q_DISABLE_COPY(SqlConnection)
public:
    explicit SqlConnection(const BenchHome &home)
    {
        m_database.setDatabaseName(QFile::decodeName(home.databasePath()));
        m_database.open();
    }
    ~SqlConnection()
    {
        const QString name = m_database.connectionName();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
    }
    const QSqlDatabase &database() const { return m_database; }

private:
    QSqlDatabase m_database =
        QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench-reload"));
};

/// The time of QtSql alone for the values: the minimum for all code that reads through it.
void qtSqlReload(benchmark::State &state, const BenchShape &shape)
{
    const BenchHome home(shape);
    const SqlConnection connection(home);
    for (auto _ : state) {
        for (const std::string &statement : reloadStatements()) {
            QSqlQuery query(connection.database());
            query.setForwardOnly(true);
            query.exec(QString::fromStdString(statement));
            const int columns = query.record().count();
            while (query.next()) {
                for (int column = 0; column < columns; ++column)
                    benchmark::DoNotOptimize(query.value(column));
            }
        }
    }
}

void byNameReload(benchmark::State &state, const BenchShape &shape)
{
    const BenchHome home(shape);
    const SqlConnection connection(home);
    for (auto _ : state) {
        const PlainQt::Reload reload = PlainQt::reload(connection.database());
        state.counters["pending"] = double(reload.pending.size());
        benchmark::DoNotOptimize(reload);
    }
}

void registerReload(const BenchShape &shape, const char *variant,
                    void (*run)(benchmark::State &, const BenchShape &))
{
    const std::string name = std::string("reload/") + shape.name + "/" + variant;
    benchmark::RegisterBenchmark(name.c_str(), run, shape)
        ->Unit(benchmark::kMillisecond)
        ->MeasureProcessCPUTime()
        ->UseRealTime();
}

void registerCounted(const char *variant, void (*run)(benchmark::State &, const BenchShape &))
{
    const std::string name = std::string("count/reload/") + variant;
    benchmark::RegisterBenchmark(name.c_str(), run, smallShape)->Iterations(countedIterations);
}

} // namespace

void registerReloadBenchmarks()
{
    for (const BenchShape &shape : {lapsShape, journalShape, wideShape, lapsShape.scaled(0.1, "laps-0.1"),
                                    lapsShape.scaled(3, "laps-3"), journalShape.scaled(0.1, "journal-0.1"),
                                    journalShape.scaled(3, "journal-3")}) {
        registerReload(shape, "plain", plainReload);
        registerReload(shape, "garage", garageReload);
    }
    for (const BenchShape &shape : {lapsShape, journalShape, wideShape}) {
        registerReload(shape, "qtsql", qtSqlReload);
        registerReload(shape, "by-name", byNameReload);
    }
    registerCounted("plain", plainReload);
    registerCounted("garage", garageReload);
}
