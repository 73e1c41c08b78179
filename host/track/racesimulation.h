#pragma once

#include <QRandomGenerator>
#include <QVector>

/// A lap that a simulated kart has finished.
struct SimulatedLap
{
    int carId;
    int runNumber; // counted from 1
    int milliseconds; // lap time
    double stepShare; // time of the finish within the step: 0 = start, 1 = end
};

/// Simulates runs, one after the other, each with some of the available karts. Has no clock of its own: time
/// passes in advance() only.
class RaceSimulation final
{
public:
    explicit RaceSimulation(quint32 seed) : m_random(seed) { }

    /// The karts for the next and later runs.
    void setAvailableCars(const QVector<int> &carIds) { m_available = carIds; }

    struct Step
    {
        QVector<SimulatedLap> laps;
        QVector<int> finishedRuns;
    };
    /// Advances the simulation and returns the laps and runs finished meanwhile.
    Step advance(qint64 milliseconds);

    /// Karts on the track now, with the laps they have driven in this run.
    struct OnTrack
    {
        int carId;
        int laps;
    };
    QVector<OnTrack> onTrack() const;
    /// 0 before the first run.
    int runNumber() const { return m_runNumber; }

private:
    struct Kart
    {
        int carId;
        int typicalLap;
        qint64 lapStart;
        qint64 lapEnd;
        int laps;
    };

    void startRun();
    void driveUntil(qint64 time, qint64 stepStart, qint64 stepLength, Step &step);
    qint64 nextLap(const Kart &kart);

    QRandomGenerator m_random;
    QVector<int> m_available;
    QVector<Kart> m_karts;
    qint64 m_time = 0;
    qint64 m_runEnd = 0;
    qint64 m_nextRun = 0;
    int m_runNumber = 0;
};
