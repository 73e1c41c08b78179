#pragma once

#include "host/track/laprecorder.h"
#include "host/track/racesimulation.h"

#include <QElapsedTimer>
#include <QObject>
#include <QThread>
#include <QTimer>

class FleetController;
class PluginHost;

/// The race track: manually entered runs and a live simulation at an adjustable speed. Announces each run to
/// the plug-in once its laps are committed.
class Track final : public QObject
{
    Q_OBJECT
public:
    static constexpr int slowest = 1;
    static constexpr int fastest = 1000;

    Track(const QString &databasePath, FleetController &fleet, PluginHost &plugin, quint32 seed,
          QObject *parent = nullptr);
    ~Track() override;

    bool isLive() const { return m_clock.isActive(); }
    void setLive(bool live);
    /// Simulated time per real time. Laps get real time stamps, so that a service recorded now is later than
    /// every lap.
    void setSpeed(int factor);
    int speed() const { return m_speed; }
    const RaceSimulation &simulation() const { return m_simulation; }

    /// Runs the simulation for the given simulated time at once. Its laps get time stamps that end now.
    void simulate(qint64 milliseconds);

    /// Records a run that ends now: each car drives `laps` laps of `lapMilliseconds`.
    void recordRun(const QVector<int> &carIds, int laps, int lapMilliseconds);

    int savedLaps() const { return m_savedLaps; }
    int savedRuns() const { return m_savedRuns; }

signals:
    /// The state of the simulation or a counter of saved laps and runs has changed.
    void changed();
    /// Laps could not be written and are retried; lapsSaved() follows.
    void failed(const QString &reason);
    /// A batch of laps is committed; a failure reported before is over.
    void lapsSaved();

private:
    void tick();
    /// Advances the simulation; its laps are spread over the last `realTime` milliseconds.
    void advance(qint64 simulatedTime, qint64 realTime);
    void record(const QVector<RecordedLap> &laps, const QVector<int> &finishedRuns);
    void refreshCars();
    void onRunSaved(int runId);
    void announceRun();
    void onReloadFinished();

    FleetController &m_fleet;
    PluginHost &m_plugin;
    RaceSimulation m_simulation;
    LapRecorder *m_recorder; // lives in m_thread, deleted when it finishes
    QThread m_thread;
    QTimer m_clock;
    QElapsedTimer m_sinceTick;
    int m_speed = 60;
    int m_manualRuns = 0;
    int m_savedLaps = 0;
    int m_savedRuns = 0;
    bool m_awaitsReload = false;
    bool m_hasUnannouncedRun = false;
};
