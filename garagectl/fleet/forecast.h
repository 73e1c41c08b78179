#pragma once

#include "garagectl/fleet/duerow.h"
#include "garagectl/fleet/pace.h"

/// When an operation of a kart will be due.
struct ForecastRow
{
    DueRow due;
    Pace pace;
    QDate expectedDay; ///< invalid: due already, or unknown

    /// False also if the day is unknown.
    bool isDueBy(const QDate &day) const;
};

/// One row per kart and operation that has a limit: first those that are due already, then by day, at the end
/// those whose day is unknown.
QVector<ForecastRow> forecastRows(const FleetStatus &fleet, const QVector<DrivingDay> &driving,
                                  const QDate &today);
