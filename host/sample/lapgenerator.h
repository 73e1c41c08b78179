#pragma once

#include <QVector>

#include <functional>

class QDateTime;
class QRandomGenerator;

/// How much a season of driving holds.
struct DrivingPlan
{
    int days;
    int runsPerDay;
    int carsPerRun;
    int lapsPerRun;
    int lapCount; // stop here; 0 = drive all days to their end
};

/// What one car drove in one run. Times are milliseconds since the epoch, UTC.
struct CarRun
{
    qint64 start;
    qint64 end;
    int laps;
};

/// A finished lap.
struct DrivenLap
{
    int carIndex;
    int runId;
    qint64 finished;
    int milliseconds;
};

/// Drives karts up and down the past: days of opening hours, runs one after the other, laps that differ.
class DrivingHistory final
{
public:
    /// Called for each lap in time order; false stops the driving.
    using LapWriter = std::function<bool(const DrivenLap &lap, int lapsSoFar)>;

    DrivingHistory(const DrivingPlan &plan, const QVector<int> &lapTimes, QRandomGenerator &random);

    /// Drives until `now`. False if the writer stopped it.
    bool drive(const QDateTime &now, const LapWriter &write);

    int lapCount() const { return m_laps; }
    /// About how many laps there will be.
    int expectedLaps() const;
    const QVector<CarRun> &runsOf(int carIndex) const { return m_runs.at(carIndex); }

private:
    bool driveRun(qint64 start, const LapWriter &write);
    QVector<int> chooseCars();
    bool isFull() const { return m_plan.lapCount > 0 && m_laps >= m_plan.lapCount; }

    const DrivingPlan m_plan;
    const QVector<int> m_lapTimes; // by car index
    QRandomGenerator &m_random;
    QVector<QVector<CarRun>> m_runs;
    QVector<int> m_order;
    int m_runId = 0;
    int m_laps = 0;
};
