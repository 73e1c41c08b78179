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

#include <initializer_list>
#include <list>
#include <string>

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

void registerReload(const std::string &name, const char *variant, const BenchShape &shape,
                    void (*run)(benchmark::State &, const BenchShape &))
{
    benchmark::RegisterBenchmark((name + "/" + variant).c_str(), run, shape)
        ->Unit(benchmark::kMillisecond)
        ->MeasureProcessCPUTime()
        ->UseRealTime();
}

/// Files in which one size differs from the season's: each yields a point of a line. Registered as
/// "fit/SIZE/NUMBER/VARIANT"; the folders are named "fit-SIZE-NUMBER".
void registerFitted()
{
    static std::list<std::string> names; // a shape refers to its name
    const auto add = [](const char *size, int BenchShape::*member, std::initializer_list<int> numbers) {
        for (const int number : numbers) {
            names.push_back(std::string("fit-") + size + "-" + std::to_string(number));
            BenchShape shape = lapsShape;
            shape.name = names.back().c_str();
            shape.serviceDays = 30;
            shape.*member = number;
            const std::string name = std::string("fit/") + size + "/" + std::to_string(number);
            registerReload(name, "plain", shape, plainReload);
            registerReload(name, "garage", shape, garageReload);
        }
    };
    add("karts", &BenchShape::cars, {20, 40, 60, 80, 100});
    add("operations", &BenchShape::operations, {4, 8, 12, 16, 20});
    add("records", &BenchShape::records, {20000, 60000, 100000, 150000, 200000});
    add("laps", &BenchShape::laps, {600000, 1200000, 1800000, 2400000, 3000000});
    add("older-laps", &BenchShape::olderLaps, {0, 1000000, 2000000, 3000000, 4000000});
}

void registerCounted(const char *variant, void (*run)(benchmark::State &, const BenchShape &))
{
    const std::string name = std::string("count/reload/") + variant;
    benchmark::RegisterBenchmark(name.c_str(), run, smallShape)->Iterations(countedIterations);
}

} // namespace

void registerReloadBenchmarks()
{
    for (const BenchShape &shape : {lapsShape, journalShape, wideShape}) {
        const std::string name = std::string("reload/") + shape.name;
        registerReload(name, "plain", shape, plainReload);
        registerReload(name, "garage", shape, garageReload);
        registerReload(name, "qtsql", shape, qtSqlReload);
        registerReload(name, "by-name", shape, byNameReload);
    }
    registerFitted();
    registerCounted("plain", plainReload);
    registerCounted("garage", garageReload);
}
