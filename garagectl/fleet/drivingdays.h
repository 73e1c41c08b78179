#pragma once

#include "data/garagedatabase.h"
#include "garagectl/fleet/meters.h"

#include <QDate>
#include <QVector>

/// What one kart drove on one day of local time.
struct DrivingDay
{
    int carId = noId;
    QDate day;
    qint64 seconds = 0;
    int runs = 0;
    int laps = 0;

    double driven(Meters::Meter meter) const;
};

/// The driving of the last days before `today` in which any kart was driven, `openDays` of them or all there
/// are. Laps whose time is no date and time are left out, as are those without a lap time above 0.
QVector<DrivingDay> readDrivingDays(const GarageDatabase &database, const QDate &today, int openDays);
