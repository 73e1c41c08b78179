#pragma once

#include "garagectl/fleet/drivingdays.h"

#include <QDate>
#include <QHash>
#include <QVector>

constexpr int daysOfWeek = 7;

/// How much a kart drives on a day on which the track is open.
struct Pace
{
    enum Basis {
        None, ///< nothing to go by; all zeros
        Model, ///< the mean of the karts of its model
        Kart
    };

    Basis basis = None;
    double seconds = 0;
    double runs = 0;
    double laps = 0;

    double perDay(Meters::Meter meter) const;
};

/// On which days of the week the track is open, as it was on the days given.
class OpeningDays final
{
public:
    /// The days in any order, also several times.
    explicit OpeningDays(const QVector<QDate> &openDays);

    int count() const { return m_count; }
    /// The day on which that many open days from tomorrow on are over; invalid if that takes more than 10
    /// years.
    QDate dayAfter(const QDate &today, double openDays) const;

private:
    /// How likely the track is open on such a day, 0 to 1.
    double share(const QDate &day) const { return m_shares[day.dayOfWeek() - 1]; }

    int m_count = 0;
    double m_shares[7] = {};
};

/// The paces of a fleet, from what it drove on the last open days.
class FleetPace final
{
public:
    FleetPace(const QList<MaintainanceItem> &cars, const QVector<DrivingDay> &driving);

    /// Of the kart itself if it drove on at least 3 days, else of its model.
    Pace of(const MaintainanceItem &car) const;
    const OpeningDays &openingDays() const { return m_openingDays; }

private:
    const OpeningDays m_openingDays;
    QHash<int, Pace> m_byCar;
    QHash<QString, Pace> m_byModel;
};

/// When the first of the limits is passed at this pace; invalid if none will be, or if one is exceeded
/// already.
QDate expectedDay(const OperationStat &stat, const Limits &limits, const Pace &pace,
                  const OpeningDays &openingDays, const QDate &today);
