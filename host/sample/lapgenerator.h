#pragma once

#include <QVector>

#include <functional>

class QDateTime;
class QRandomGenerator;

/// The extent of the generated laps.
struct DrivingPlan
{
    int days;
    int runsPerDay;
    int carsPerRun;
    int lapsPerRun;
    int lapCount; // the maximum; 0 = no maximum
};

/// The share of one car in one run. Times are milliseconds since the epoch, UTC.
struct CarRun
{
    qint64 start;
    qint64 end;
    int laps;
};

/// A finished lap.
struct GeneratedLap
{
    int carIndex;
    int runId;
    qint64 finished;
    int milliseconds;
};

/// Generates the laps of past days: runs one after the other during opening hours, with varying lap times.
class LapGenerator final
{
public:
    /// Called for each lap in time order; false stops the generation.
    using LapWriter = std::function<bool(const GeneratedLap &lap, int lapsSoFar)>;

    LapGenerator(const DrivingPlan &plan, const QVector<int> &lapTimes, QRandomGenerator &random);

    /// Generates the laps until `now`. False if the writer stopped it.
    bool generate(const QDateTime &now, const LapWriter &write);

    int lapCount() const { return m_laps; }
    /// The approximate number of laps of generate().
    int expectedLaps() const;
    const QVector<CarRun> &runsOf(int carIndex) const { return m_runs.at(carIndex); }

private:
    bool generateRun(qint64 start, const LapWriter &write);
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
