#pragma once

#include "garagectl/fleet/forecast.h"

/// What the page shows. Rows and records are those of "due", "forecast" and "history".
struct Report
{
    QDateTime now; ///< local time
    QString fileName; ///< of the database
    int paceDays = 28; ///< open days from which the pace was taken
    int weeks = 8; ///< of the calendar ahead, and of the work done
    int recordsPerKart = 20; ///< the latest ones

    QList<MaintainanceItem> cars;
    QVector<DueRow> rows;
    QVector<ForecastRow> forecast;
    QList<ServiceLogItem> log; ///< newest first
};
