#include "data/garagestatistics.h"

#include "data/datetimetext.h"
#include "data/limitcolumns.h"
#include "data/scheduletables.h"
#include "data/selectedcolumn.h"

#include <QMultiHash>
#include <QSet>

#include <algorithm>
#include <limits>

namespace {

const QString selectCars = QStringLiteral("SELECT id,num,name FROM cars");
enum SelectCars { CarsId, CarsNum, CarsName };

// The bare columns beside max() are those of the row that holds the maximum, the latest record.
const QString selectDrivingSinceService = QStringLiteral(
    "select m.*,sum(sum_sectors)/1000 as tt ,count(lap_id) as lc,count(distinct run_id) as rc from "
    "(select car_id,operation_id,max(operation_time) as ot,operation_state,comment,id from maintainance "
    "group by car_id,operation_id) m left outer join laps on (laps.car_id=m.car_id and "
    "laps.lap_timestamp>m.ot and laps.sum_sectors>0) group by m.car_id,m.operation_id");
enum SelectDrivingSinceService {
    DrivingCarId,
    DrivingOperationId,
    DrivingOperationTime,
    DrivingState,
    DrivingComment,
    DrivingId,
    DrivingSeconds,
    DrivingLaps,
    DrivingRuns
};

const QString selectServiceLog = QStringLiteral(
    "select maintainance.car_id,maintainance.operation_id,maintainance.remote_id,maintainance.id,num,"
    "cars.name as model,operation_time,operation_name,"
    "ifnull(p.last_name||' '||p.first_name||' '||p.mid_name,maintainance.person_name) as pname, "
    "comment,operation_state from maintainance left join cars on cars.id=maintainance.car_id "
    "left join service_operations on service_operations.id=maintainance.operation_id "
    "left join personal p on p.id=maintainance.person_id order by operation_time desc");
enum SelectServiceLog {
    LogCarId,
    LogOperationId,
    LogRemoteId,
    LogId,
    LogNum,
    LogModel,
    LogOperationTime,
    LogOperationName,
    LogPersonName,
    LogComment,
    LogState
};

const QString selectReglament =
    QStringLiteral("SELECT * FROM service_reglament left join service_operations on "
                   "service_reglament.operation_id=service_operations.id");

/// -1 for a value that is no integer or does not fit into 32 bits.
int narrowInteger(const QVariant &value)
{
    using Range = std::numeric_limits<int>;
    bool isInteger = false;
    const qlonglong wide = value.toLongLong(&isInteger);
    return isInteger && wide >= Range::min() && wide <= Range::max() ? int(wide) : noId;
}

/// Shares equal texts of the rows of a query.
class SharedTexts final
{
public:
    QString shared(const QVariant &value) { return *m_texts.insert(value.toString()); }

private:
    QSet<QString> m_texts;
};

ModelReglament &reglamentOf(QList<ModelReglament> &reglament, const QString &model)
{
    auto it = std::find_if(reglament.begin(), reglament.end(),
                           [&model](const ModelReglament &entry) { return entry.model == model; });
    if (it == reglament.end())
        it = reglament.insert(it, {model, {}});
    return *it;
}

} // namespace

QList<MaintainanceItem> GarageStatistics::readCars(const GarageDatabase &database)
{
    QList<MaintainanceItem> cars;
    QSqlQuery query = database.run(selectCars);
    while (database.next(query)) {
        cars.append({query.value(CarsId).toInt(),
                     query.value(CarsNum).toString(),
                     query.value(CarsName).toString(),
                     {}});
    }
    return cars;
}

void GarageStatistics::readDrivingSinceService(const GarageDatabase &database, QList<MaintainanceItem> &cars)
{
    // The host may list a car twice; then both entries get the same operations.
    QMultiHash<int, int> carRows;
    for (int row = 0; row < cars.size(); ++row)
        carRows.insert(cars.at(row).carId, row);

    QSqlQuery query = database.run(selectDrivingSinceService);
    while (database.next(query)) {
        OperationStat stat;
        stat.opId = query.value(DrivingOperationId).toInt();
        stat.lastDone = DateTimeText::fromDatabase(query.value(DrivingOperationTime).toString());
        stat.totalTime = query.value(DrivingSeconds).toInt();
        stat.runs = query.value(DrivingRuns).toInt();
        stat.laps = query.value(DrivingLaps).toInt();
        stat.state = query.value(DrivingState).toInt();
        stat.comment = query.value(DrivingComment).toString();
        stat.localId = query.value(DrivingId).toInt();

        const int carId = query.value(DrivingCarId).toInt();
        for (auto it = carRows.constFind(carId); it != carRows.cend() && it.key() == carId; ++it)
            cars[it.value()].ops.insert(stat.opId, stat);
    }
}

QList<ServiceLogItem> GarageStatistics::readServiceLog(const GarageDatabase &database)
{
    QList<ServiceLogItem> log;
    SharedTexts names;
    QSqlQuery query = database.run(selectServiceLog);
    while (database.next(query)) {
        log.append(ServiceLogItem());
        ServiceLogItem &item = log.last();
        item.id = query.value(LogId).toInt();
        item.carId = query.value(LogCarId).toInt();
        item.state = query.value(LogState).toInt();
        item.opId = query.value(LogOperationId).toInt();
        item.num = names.shared(query.value(LogNum));
        item.model = names.shared(query.value(LogModel));
        item.opTime = DateTimeText::fromDatabase(query.value(LogOperationTime).toString());
        item.opName = names.shared(query.value(LogOperationName));
        item.personName = names.shared(query.value(LogPersonName));
        item.comment = query.value(LogComment).toString();

        item.remoteId = narrowInteger(query.value(LogRemoteId));
    }
    return log;
}

QList<ModelReglament> GarageStatistics::readReglament(const GarageDatabase &database)
{
    QList<ModelReglament> reglament;
    QSqlQuery query = database.run(selectReglament);
    const SelectedColumn model(query, QStringLiteral("model"));
    const SelectedColumn opId(query, QStringLiteral("operation_id"));
    const SelectedColumn opName(query, QStringLiteral("operation_name"));
    const LimitColumns columns(query);
    while (database.next(query)) {
        reglamentOf(reglament, model.toString())
            .limits.insert(opId.toInt(), {opId.toInt(), opName.toString(), columns.limits()});
    }
    return reglament;
}

ServiceOperations GarageStatistics::readOperations(const GarageDatabase &database)
{
    ServiceOperations operations;
    for (const ServiceOperation &operation : ScheduleTables::readOperations(database))
        operations.insert(operation.id, operation.name);
    return operations;
}

QStringList GarageStatistics::statements()
{
    return {selectCars, selectDrivingSinceService, selectServiceLog, selectReglament};
}

QString GarageStatistics::drivingStatement()
{
    return selectDrivingSinceService;
}
