#include "host/track/racesimulation.h"

#include <algorithm>

namespace {
constexpr qint64 runLength = 8 * 60 * 1000; // milliseconds
constexpr qint64 pauseLength = 60 * 1000;
constexpr int fewestKarts = 4;
constexpr int mostKarts = 10;
} // namespace

RaceSimulation::Step RaceSimulation::advance(qint64 milliseconds)
{
    Step step;
    const qint64 stepStart = m_time;
    const qint64 stepEnd = m_time + milliseconds;
    while (m_time < stepEnd) {
        if (m_karts.isEmpty() && m_time >= m_nextRun)
            startRun();
        if (m_karts.isEmpty()) {
            const bool waitsForPause = m_nextRun > m_time;
            m_time = waitsForPause ? std::min(stepEnd, m_nextRun) : stepEnd;
            continue;
        }
        m_time = std::min(stepEnd, m_runEnd);
        driveUntil(m_time, stepStart, milliseconds, step);
        if (m_time >= m_runEnd) {
            step.finishedRuns.append(m_runNumber);
            m_karts.clear();
            m_nextRun = m_runEnd + pauseLength;
        }
    }
    return step;
}

QVector<RaceSimulation::OnTrack> RaceSimulation::onTrack() const
{
    QVector<OnTrack> list;
    for (const Kart &kart : m_karts)
        list.append({kart.carId, kart.laps});
    return list;
}

void RaceSimulation::startRun()
{
    QVector<int> cars = m_available;
    if (cars.isEmpty())
        return;
    std::shuffle(cars.begin(), cars.end(), m_random);
    cars.resize(std::min(int(cars.size()), m_random.bounded(fewestKarts, mostKarts + 1)));
    ++m_runNumber;
    m_runEnd = m_time + runLength;
    for (const int car : qAsConst(cars)) {
        Kart kart {car, m_random.bounded(36000, 50000), m_time, 0, 0};
        kart.lapEnd = nextLap(kart);
        m_karts.append(kart);
    }
}

void RaceSimulation::driveUntil(qint64 time, qint64 stepStart, qint64 stepLength, Step &step)
{
    for (Kart &kart : m_karts) {
        while (kart.lapEnd <= time) {
            const double share = double(kart.lapEnd - stepStart) / double(stepLength);
            step.laps.append({kart.carId, m_runNumber, int(kart.lapEnd - kart.lapStart), share});
            ++kart.laps;
            kart.lapStart = kart.lapEnd;
            kart.lapEnd = nextLap(kart);
        }
    }
}

qint64 RaceSimulation::nextLap(const Kart &kart)
{
    return kart.lapStart + kart.typicalLap + m_random.bounded(-1500, 4000);
}
