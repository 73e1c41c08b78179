#include "garagectl/fleet/derivation.h"

#include "data/duerule.h"
#include "garagectl/fleet/lapsql.h"

#include <QVariant>

namespace {

const QString selectLatest =
    QStringLiteral("SELECT count(*), sum(operation_time = latest), latest FROM maintainance, "
                   "(SELECT max(operation_time) AS latest FROM maintainance WHERE car_id = :car AND "
                   "operation_id = :operation) "
                   "WHERE car_id = :car AND operation_id = :operation");
enum SelectLatest { LatestRecords, LatestSameTime, LatestTime };

const QString selectPerson = QStringLiteral("SELECT person_name FROM maintainance WHERE id = :id");

// The first condition is the one by which the module counts; the numbers are those of LapVerdict.
const QString selectLaps =
    QStringLiteral(
        "SELECT CASE WHEN lap_timestamp > latest AND sum_sectors > 0 THEN 0 WHEN NOT ifnull(%1, 0) THEN 1 "
        "WHEN sum_sectors > 0 THEN 3 ELSE 2 END AS verdict, "
        "count(*), count(DISTINCT run_id), sum(NOT ifnull(%1, 0)), min(lap_timestamp), max(lap_timestamp) "
        "FROM laps, "
        "(SELECT max(operation_time) AS latest FROM maintainance WHERE car_id = :car AND operation_id = "
        ":operation) "
        "WHERE car_id = :car GROUP BY verdict")
        .arg(lapTimeIsReadable);
enum SelectLaps { LapsVerdict, LapsCount, LapsRuns, LapsUnreadable, LapsFirst, LapsLast };

QSqlQuery selectFor(const GarageDatabase &database, const QString &statement, const DueRow &row)
{
    QSqlQuery query = database.newQuery();
    query.prepare(statement);
    query.bindValue(QStringLiteral(":car"), row.carId);
    query.bindValue(QStringLiteral(":operation"), row.opId);
    query.exec();
    return query;
}

QVector<LapGroup> readLaps(const GarageDatabase &database, const DueRow &row)
{
    QVector<LapGroup> groups;
    QSqlQuery query = selectFor(database, selectLaps, row);
    while (database.next(query)) {
        groups.append({LapVerdict(query.value(LapsVerdict).toInt()), query.value(LapsCount).toInt(),
                       query.value(LapsRuns).toInt(), query.value(LapsUnreadable).toInt(),
                       query.value(LapsFirst).toString(), query.value(LapsLast).toString()});
    }
    return groups;
}

QString readPerson(const GarageDatabase &database, int localId)
{
    QSqlQuery query = database.newQuery();
    query.prepare(selectPerson);
    query.bindValue(QStringLiteral(":id"), localId);
    query.exec();
    return database.next(query) ? query.value(0).toString() : QString();
}

} // namespace

Derivation readDerivation(const GarageDatabase &database, const DueRow &row)
{
    Derivation derivation;
    derivation.row = row;
    if (!row.isRecorded)
        return derivation;

    QSqlQuery query = selectFor(database, selectLatest, row);
    if (database.next(query)) {
        derivation.recordCount = query.value(LatestRecords).toInt();
        derivation.latestCount = query.value(LatestSameTime).toInt();
        derivation.latestTime = query.value(LatestTime).toString();
    }
    query.finish();
    derivation.person = readPerson(database, row.stat.localId);
    derivation.laps = readLaps(database, row);
    derivation.isListedByFilter =
        row.stat.state == OpenState || DueRule::isDueForFilter(row.stat, row.limits);
    return derivation;
}
