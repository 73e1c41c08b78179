#include "bench/plainqt.h"

#include "bench/plainsqlite.h"
#include "data/datetimetext.h"
#include "data/duelist.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

namespace {

QString statement(std::size_t number)
{
    return QString::fromStdString(reloadStatements().at(number));
}

int number(const QSqlQuery &query, const char *column)
{
    return query.value(QString::fromLatin1(column)).toInt();
}

QString text(const QSqlQuery &query, const char *column)
{
    return query.value(QString::fromLatin1(column)).toString();
}

QList<MaintainanceItem> readCars(const QSqlDatabase &database)
{
    QList<MaintainanceItem> cars;
    QSqlQuery query(statement(0), database);
    while (query.next())
        cars.append({number(query, "id"), text(query, "num"), text(query, "name"), {}});
    return cars;
}

void readDrivingSinceService(const QSqlDatabase &database, QList<MaintainanceItem> &cars)
{
    QSqlQuery query(statement(1), database);
    while (query.next()) {
        OperationStat stat;
        stat.opId = number(query, "operation_id");
        stat.lastDone = DateTimeText::fromDatabase(text(query, "ot"));
        stat.totalTime = number(query, "tt");
        stat.runs = number(query, "rc");
        stat.laps = number(query, "lc");
        stat.state = number(query, "operation_state");
        stat.comment = text(query, "comment");
        stat.localId = number(query, "id");
        for (MaintainanceItem &car : cars) {
            if (car.carId == number(query, "car_id"))
                car.ops.insert(stat.opId, stat);
        }
    }
}

QList<ServiceLogItem> readServiceLog(const QSqlDatabase &database)
{
    QList<ServiceLogItem> log;
    QSqlQuery query(statement(2), database);
    while (query.next()) {
        ServiceLogItem item;
        item.id = number(query, "id");
        item.carId = number(query, "car_id");
        item.state = number(query, "operation_state");
        item.opId = number(query, "operation_id");
        item.num = text(query, "num");
        item.model = text(query, "model");
        item.opTime = DateTimeText::fromDatabase(text(query, "operation_time"));
        item.opName = text(query, "operation_name");
        item.personName = text(query, "pname");
        item.comment = text(query, "comment");
        item.remoteId = number(query, "remote_id");
        log.append(item);
    }
    return log;
}

QList<ModelReglament> readReglament(const QSqlDatabase &database)
{
    QMap<QString, ModelReglament> limits;
    QSqlQuery query(statement(3), database);
    while (query.next()) {
        const int opId = number(query, "operation_id");
        ModelReglament &reglament = limits[text(query, "model")];
        reglament.model = text(query, "model");
        reglament.limits.insert(opId,
                                {opId, text(query, "operation_name"), number(query, "time_limit"),
                                 number(query, "runs_limit"), number(query, "laps_limit")});
    }
    return limits.values();
}

ServiceOperations readOperations(const QSqlDatabase &database)
{
    ServiceOperations operations;
    QSqlQuery query(statement(4), database);
    while (query.next())
        operations.insert(number(query, "id"), text(query, "operation_name"));
    return operations;
}

} // namespace

PlainQt::Reload PlainQt::reload(const QSqlDatabase &database)
{
    QList<MaintainanceItem> cars = readCars(database);
    readDrivingSinceService(database, cars);
    const QList<ServiceLogItem> log = readServiceLog(database);
    const QList<ModelReglament> reglament = readReglament(database);
    const ServiceOperations operations = readOperations(database);
    return {DueList::pendingServices(cars, reglament), DueList::carStatuses(cars)};
}
