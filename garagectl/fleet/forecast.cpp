#include "garagectl/fleet/forecast.h"

#include <algorithm>

namespace {

/// The sort key of a row: the first possible day if it is due already, the last one if the day is unknown.
QDate orderDay(const ForecastRow &row)
{
    static const QDate first(1, 1, 1);
    static const QDate last(9999, 12, 31);
    if (row.due.needsWork())
        return first;
    return row.expectedDay.isValid() ? row.expectedDay : last;
}

} // namespace

bool ForecastRow::isDueBy(const QDate &day) const
{
    return due.needsWork() || (expectedDay.isValid() && expectedDay <= day);
}

QVector<ForecastRow> forecastRows(const FleetStatus &fleet, const QVector<DrivingDay> &driving,
                                  const QDate &today)
{
    const FleetPace paces(fleet.cars, driving);
    QHash<int, Pace> paceByCar;
    for (const MaintainanceItem &car : fleet.cars)
        paceByCar.insert(car.carId, paces.of(car));

    QVector<ForecastRow> rows;
    for (const DueRow &due : dueRows(fleet, defaultSoonShare)) {
        if (!due.limits.hasAny())
            continue;
        ForecastRow row {due, paceByCar.value(due.carId), {}};
        if (due.isRecorded)
            row.expectedDay = expectedDay(due.stat, due.limits, row.pace, paces.openingDays(), today);
        rows.append(row);
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const ForecastRow &a, const ForecastRow &b) { return orderDay(a) < orderDay(b); });
    return rows;
}
