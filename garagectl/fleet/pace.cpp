#include "garagectl/fleet/pace.h"

#include "data/duerule.h"

#include <QSet>

#include <algorithm>

namespace {

constexpr int fewestDaysOfKart = 3;
constexpr int fewestDaysForWeekdays = 2 * daysOfWeek; // in a shorter time each weekday came up once at most
constexpr int mostDaysAhead = 3653;

QVector<QDate> daysOf(const QVector<DrivingDay> &driving)
{
    QVector<QDate> days;
    for (const DrivingDay &entry : driving)
        days.append(entry.day);
    return days;
}

void add(Pace &sum, double seconds, double runs, double laps)
{
    sum.seconds += seconds;
    sum.runs += runs;
    sum.laps += laps;
}

Pace divided(const Pace &sum, int count, Pace::Basis basis)
{
    return {basis, sum.seconds / count, sum.runs / count, sum.laps / count};
}

} // namespace

double Pace::perDay(Meters::Meter meter) const
{
    switch (meter) {
    case Meters::Seconds:
        return seconds;
    case Meters::Runs:
        return runs;
    case Meters::Laps:
        return laps;
    }
    return 0;
}

OpeningDays::OpeningDays(const QVector<QDate> &openDays)
{
    const QSet<QDate> days(openDays.cbegin(), openDays.cend());
    m_count = int(days.size());
    if (days.isEmpty())
        return;
    const QDate first = *std::min_element(days.cbegin(), days.cend());
    const QDate last = *std::max_element(days.cbegin(), days.cend());
    const int span = int(first.daysTo(last)) + 1;
    if (span < fewestDaysForWeekdays) {
        std::fill(std::begin(m_shares), std::end(m_shares), double(m_count) / span);
        return;
    }
    int calendarDays[daysOfWeek] = {};
    for (QDate day = first; day <= last; day = day.addDays(1))
        ++calendarDays[day.dayOfWeek() - 1];
    for (const QDate &day : days)
        m_shares[day.dayOfWeek() - 1] += 1.0 / calendarDays[day.dayOfWeek() - 1];
}

QDate OpeningDays::dayAfter(const QDate &today, double openDays) const
{
    double passed = 0;
    for (int ahead = 1; ahead <= mostDaysAhead; ++ahead) {
        const QDate day = today.addDays(ahead);
        passed += share(day);
        if (share(day) > 0 && passed >= openDays)
            return day;
    }
    return {};
}

FleetPace::FleetPace(const QList<MaintainanceItem> &cars, const QVector<DrivingDay> &driving)
    : m_openingDays(daysOf(driving))
{
    QHash<int, Pace> sums;
    QHash<int, int> days;
    for (const DrivingDay &entry : driving) {
        add(sums[entry.carId], double(entry.seconds), entry.runs, entry.laps);
        ++days[entry.carId];
    }

    QHash<QString, Pace> modelSums;
    QHash<QString, int> modelCars;
    for (const MaintainanceItem &car : cars) {
        if (days.value(car.carId) < fewestDaysOfKart)
            continue;
        const Pace pace = divided(sums.value(car.carId), m_openingDays.count(), Pace::Kart);
        m_byCar.insert(car.carId, pace);
        add(modelSums[car.model], pace.seconds, pace.runs, pace.laps);
        ++modelCars[car.model];
    }
    for (auto it = modelSums.cbegin(); it != modelSums.cend(); ++it)
        m_byModel.insert(it.key(), divided(*it, modelCars.value(it.key()), Pace::Model));
}

Pace FleetPace::of(const MaintainanceItem &car) const
{
    const auto own = m_byCar.constFind(car.carId);
    return own == m_byCar.cend() ? m_byModel.value(car.model) : *own;
}

QDate expectedDay(const OperationStat &stat, const Limits &limits, const Pace &pace,
                  const OpeningDays &openingDays, const QDate &today)
{
    if (DueRule::isDue(stat, limits))
        return {};
    std::optional<double> openDays;
    for (const Meters::Meter meter : Meters::all) {
        const std::optional<qint64> left = Meters::left(stat, limits, meter);
        if (!left || pace.perDay(meter) <= 0)
            continue;
        const double days = double(*left) / pace.perDay(meter);
        openDays = openDays ? std::min(*openDays, days) : days;
    }
    return openDays ? openingDays.dayAfter(today, *openDays) : QDate();
}
