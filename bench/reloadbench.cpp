#include "bench/benchdata.h"
#include "bench/plainsqlite.h"
#include "bench/registration.h"
#include "data/datetimetext.h"
#include "data/duelist.h"
#include "data/garageupdater.h"

#include <benchmark/benchmark.h>

#include <QEventLoop>
#include <QFile>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

namespace {

void plainReload(benchmark::State &state, const BenchShape &shape)
{
    const BenchHome home(shape);
    PlainSqlite database(home.databasePath());
    database.exec("PRAGMA encoding=UTF8");
    for (auto _ : state) {
        for (const char *statement : reloadStatements)
            benchmark::DoNotOptimize(database.readAll(statement));
    }
}

/// From the wish to reload to the records' arrival in the asking thread.
void garageReload(benchmark::State &state, const BenchShape &shape)
{
    const BenchHome home(shape);
    home.enter();
    GarageUpdater loader;
    QEventLoop loop;
    QObject::connect(&loader, &GarageUpdater::garageStatsUpdated, &loop, [&loop] { loop.quit(); });
    for (auto _ : state) {
        QMetaObject::invokeMethod(&loader, &GarageUpdater::reloadStats, Qt::QueuedConnection);
        loop.exec();
    }
}

/// The same rows as one would first write it: by column name, with the driver's row cache.
void naiveReload(benchmark::State &state, const BenchShape &shape)
{
    const BenchHome home(shape);
    const QString connection = QStringLiteral("naive");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        database.setDatabaseName(QFile::decodeName(home.databasePath()));
        database.open();
        const auto text = [](const char *name) { return QString::fromLatin1(name); };
        for (auto _ : state) {
            QList<MaintainanceItem> cars;
            QSqlQuery query(QString::fromLatin1(reloadStatements[0]), database);
            while (query.next())
                cars.append({query.value(text("id")).toInt(),
                             query.value(text("num")).toString(),
                             query.value(text("name")).toString(),
                             {}});

            query.exec(QString::fromLatin1(reloadStatements[1]));
            while (query.next()) {
                OperationStat stat;
                stat.opId = query.value(text("operation_id")).toInt();
                stat.lastDone = DateTimeText::fromDatabase(query.value(text("ot")).toString());
                stat.totalTime = query.value(text("tt")).toInt();
                stat.runs = query.value(text("rc")).toInt();
                stat.laps = query.value(text("lc")).toInt();
                stat.state = query.value(text("operation_state")).toInt();
                stat.comment = query.value(text("comment")).toString();
                stat.localId = query.value(text("id")).toInt();
                for (MaintainanceItem &car : cars) {
                    if (car.carId == query.value(text("car_id")).toInt())
                        car.ops.insert(stat.opId, stat);
                }
            }

            QList<ServiceLogItem> log;
            query.exec(QString::fromLatin1(reloadStatements[2]));
            while (query.next()) {
                ServiceLogItem item;
                item.id = query.value(text("id")).toInt();
                item.carId = query.value(text("car_id")).toInt();
                item.state = query.value(text("operation_state")).toInt();
                item.opId = query.value(text("operation_id")).toInt();
                item.num = query.value(text("num")).toString();
                item.model = query.value(text("model")).toString();
                item.opTime = DateTimeText::fromDatabase(query.value(text("operation_time")).toString());
                item.opName = query.value(text("operation_name")).toString();
                item.personName = query.value(text("pname")).toString();
                item.comment = query.value(text("comment")).toString();
                item.remoteId = query.value(text("remote_id")).toInt();
                log.append(item);
            }

            QHash<QString, ModelReglament> limits;
            query.exec(QString::fromLatin1(reloadStatements[3]));
            while (query.next()) {
                const QString model = query.value(text("model")).toString();
                const int opId = query.value(text("operation_id")).toInt();
                ModelReglament &reglament = limits[model];
                reglament.model = model;
                reglament.limits.insert(opId,
                                        {opId, query.value(text("operation_name")).toString(),
                                         query.value(text("time_limit")).toInt(),
                                         query.value(text("runs_limit")).toInt(),
                                         query.value(text("laps_limit")).toInt()});
            }
            ServiceOperations operations;
            query.exec(QString::fromLatin1(reloadStatements[4]));
            while (query.next())
                operations.insert(query.value(text("id")).toInt(),
                                  query.value(text("operation_name")).toString());
            benchmark::DoNotOptimize(DueList::pendingServices(cars, limits.values()));
            benchmark::DoNotOptimize(DueList::carStatuses(cars));
        }
    }
    QSqlDatabase::removeDatabase(connection);
}

void registerPair(const BenchShape &shape)
{
    const std::string name = std::string("reload/") + shape.name;
    for (const auto &[variant, run] : {std::pair("/plain", plainReload), std::pair("/garage", garageReload)})
        benchmark::RegisterBenchmark((name + variant).c_str(), run, shape)
            ->Unit(benchmark::kMillisecond)
            ->MeasureProcessCPUTime()
            ->UseRealTime();
}

} // namespace

void registerReloadBenchmarks()
{
    for (const BenchShape &shape : {lapsShape, journalShape, wideShape, lapsShape.scaled(0.1, "laps-0.1"),
                                    lapsShape.scaled(3, "laps-3"), journalShape.scaled(0.1, "journal-0.1"),
                                    journalShape.scaled(3, "journal-3"), smallShape})
        registerPair(shape);
    for (const BenchShape &shape : {journalShape, wideShape})
        benchmark::RegisterBenchmark((std::string("reload/") + shape.name + "/by-name").c_str(), naiveReload,
                                     shape)
            ->Unit(benchmark::kMillisecond)
            ->MeasureProcessCPUTime()
            ->UseRealTime();
}
