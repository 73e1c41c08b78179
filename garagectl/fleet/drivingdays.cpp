#include "garagectl/fleet/drivingdays.h"

#include "garagectl/fleet/lapsql.h"

#include <QSet>
#include <QVariant>

#include <algorithm>

namespace {

const QString selectDays = QStringLiteral("SELECT car_id, date(lap_timestamp, 'localtime') AS day, "
                                          "sum(sum_sectors) / 1000, count(DISTINCT run_id), count(*) "
                                          "FROM laps WHERE lap_timestamp > :since AND sum_sectors > 0 AND %1 "
                                          "GROUP BY car_id, day HAVING day < :today")
                               .arg(lapTimeIsReadable);
enum SelectDays { DayCarId, Day, DaySeconds, DayRuns, DayLaps };

QString isoText(const QDate &day)
{
    return day.toString(Qt::ISODate);
}

QVector<DrivingDay> readSince(const GarageDatabase &database, const QString &since, const QDate &today)
{
    QVector<DrivingDay> days;
    QSqlQuery query = database.newQuery();
    query.prepare(selectDays);
    query.bindValue(QStringLiteral(":since"), since);
    query.bindValue(QStringLiteral(":today"), isoText(today));
    query.exec();
    while (database.next(query)) {
        days.append({query.value(DayCarId).toInt(),
                     QDate::fromString(query.value(Day).toString(), Qt::ISODate),
                     query.value(DaySeconds).toLongLong(), query.value(DayRuns).toInt(),
                     query.value(DayLaps).toInt()});
    }
    return days;
}

bool hasLapsSince(const GarageDatabase &database, const QDate &day)
{
    QSqlQuery query = database.newQuery();
    query.prepare(QStringLiteral("SELECT 1 FROM laps WHERE lap_timestamp > :since LIMIT 1"));
    query.bindValue(QStringLiteral(":since"), isoText(day));
    query.exec();
    return database.next(query);
}

/// Of the laps whose times can be of the past: `today` where there are none.
QDate latestDay(const GarageDatabase &database, const QDate &today)
{
    QSqlQuery query = database.newQuery();
    query.prepare(QStringLiteral("SELECT max(lap_timestamp) FROM laps WHERE lap_timestamp < :today"));
    query.bindValue(QStringLiteral(":today"), isoText(today));
    query.exec();
    const QDate day = database.next(query)
        ? QDate::fromString(query.value(0).toString().left(isoText(today).size()), Qt::ISODate)
        : QDate();
    return day.isValid() ? day : today;
}

/// Each day once, the latest first.
QVector<QDate> openDaysOf(const QVector<DrivingDay> &driving)
{
    QSet<QDate> distinct;
    for (const DrivingDay &entry : driving)
        distinct.insert(entry.day);
    QVector<QDate> days(distinct.cbegin(), distinct.cend());
    std::sort(days.begin(), days.end(), std::greater<>());
    return days;
}

} // namespace

double DrivingDay::driven(Meters::Meter meter) const
{
    switch (meter) {
    case Meters::Seconds:
        return double(seconds);
    case Meters::Runs:
        return runs;
    case Meters::Laps:
        return laps;
    }
    return 0;
}

QVector<DrivingDay> readDrivingDays(const GarageDatabase &database, const QDate &today, int openDays)
{
    // The dates of a whole season take long to work out, and many tracks are open every day, most others
    // every other day.
    const QDate end = hasLapsSince(database, today.addDays(-openDays)) ? today : latestDay(database, today);
    const QString everything = QStringLiteral(""); // not null: every text is greater
    for (const QString &since : {isoText(end.addDays(-openDays - 2)), isoText(end.addDays(-2 * openDays)),
                                 isoText(end.addDays(-8 * openDays)), everything}) {
        QVector<DrivingDay> driving = readSince(database, since, today);
        const QVector<QDate> days = openDaysOf(driving);
        // The first day after `since` may be cut off by the difference between local time and UTC.
        if (days.size() <= openDays && since != everything)
            continue;
        if (days.size() > openDays) {
            const QDate first = days.at(openDays - 1);
            driving.erase(std::remove_if(driving.begin(), driving.end(),
                                         [&first](const DrivingDay &entry) { return entry.day < first; }),
                          driving.end());
        }
        return driving;
    }
    return {};
}
