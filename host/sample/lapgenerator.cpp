#include "host/sample/lapgenerator.h"

#include <QDateTime>
#include <QRandomGenerator>

#include <numeric>

namespace {
constexpr int openingHour = 10;
constexpr qint64 openMilliseconds = 12 * 3600 * 1000LL;
constexpr qint64 quietBeforeNow = 10 * 60 * 1000LL; // the last run ends before the program starts
} // namespace

LapGenerator::LapGenerator(const DrivingPlan &plan, const QVector<int> &lapTimes, QRandomGenerator &random)
    : m_plan(plan), m_lapTimes(lapTimes), m_random(random), m_runs(lapTimes.size()), m_order(lapTimes.size())
{
    std::iota(m_order.begin(), m_order.end(), 0);
}

int LapGenerator::expectedLaps() const
{
    const int all = m_plan.days * m_plan.runsPerDay * m_plan.carsPerRun * m_plan.lapsPerRun;
    return m_plan.lapCount > 0 ? m_plan.lapCount : all;
}

bool LapGenerator::generate(const QDateTime &now, const LapWriter &write)
{
    const qint64 lastFinish = now.toMSecsSinceEpoch() - quietBeforeNow;
    const qint64 pause = openMilliseconds / m_plan.runsPerDay;
    for (int daysAgo = m_plan.days; daysAgo >= 0 && !isFull(); --daysAgo) {
        const QDateTime opening(now.toLocalTime().date().addDays(-daysAgo), QTime(openingHour, 0));
        for (int run = 0; run < m_plan.runsPerDay && !isFull(); ++run) {
            const qint64 start = opening.toMSecsSinceEpoch() + run * pause;
            if (start + pause > lastFinish)
                break;
            if (!generateRun(start, write))
                return false;
        }
    }
    return true;
}

bool LapGenerator::generateRun(qint64 start, const LapWriter &write)
{
    ++m_runId;
    const QVector<int> cars = chooseCars();
    QVector<CarRun> shares(cars.size(), CarRun {start, start, 0});
    for (int lap = 0; lap < m_plan.lapsPerRun; ++lap) {
        for (int place = 0; place < cars.size() && !isFull(); ++place) {
            const int car = cars.at(place);
            CarRun &share = shares[place];
            const int duration = m_lapTimes.at(car) + m_random.bounded(-1500, 4000);
            share.end += duration;
            ++share.laps;
            if (!write({car, m_runId, share.end, duration}, ++m_laps))
                return false;
        }
    }
    for (int place = 0; place < cars.size(); ++place)
        m_runs[cars.at(place)].append(shares.at(place));
    return true;
}

QVector<int> LapGenerator::chooseCars()
{
    const int count = std::min(m_plan.carsPerRun, int(m_order.size()));
    for (int place = 0; place < count; ++place)
        std::swap(m_order[place], m_order[m_random.bounded(place, m_order.size())]);
    return m_order.mid(0, count);
}
