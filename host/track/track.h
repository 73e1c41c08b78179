#pragma once

#include "host/track/laprecorder.h"
#include "host/track/racesimulation.h"

#include <QElapsedTimer>
#include <QObject>
#include <QThread>
#include <QTimer>

class FleetDesk;
class PluginHost;

/// The race track: runs recorded by hand or driven live at an adjustable speed. Tells the plug-in of each run
/// that is in the database.
class Track final : public QObject
{
    Q_OBJECT
public:
    static constexpr int slowest = 1;
    static constexpr int fastest = 1000;

    Track(const QString &databasePath, FleetDesk &desk, PluginHost &plugin, quint32 seed,
          QObject *parent = nullptr);
    ~Track() override;

    bool isLive() const { return m_clock.isActive(); }
    void setLive(bool live);
    /// How much faster than the clock on the wall karts drive; laps are stamped with the real time, so that
    /// work recorded now comes after them.
    void setSpeed(int factor);
    int speed() const { return m_speed; }
    const RaceSimulation &simulation() const { return m_simulation; }

    /// A run that has just ended: each car has driven so many laps of about the given time.
    void recordRun(const QVector<int> &carIds, int laps, int lapMilliseconds);

    int savedLaps() const { return m_savedLaps; }
    int savedRuns() const { return m_savedRuns; }

signals:
    /// Something was driven or saved.
    void changed();
    /// Laps wait to be saved; saved() follows.
    void failed(const QString &reason);
    void saved();
    void recordRequested(const QVector<RecordedLap> &laps, const QVector<int> &finishedRuns);

private:
    void tick();
    void refreshCars();
    void onRunSaved(int runId);
    void announceRun();
    void onAnswer();

    FleetDesk &m_desk;
    PluginHost &m_plugin;
    RaceSimulation m_simulation;
    LapRecorder *m_recorder; // lives and ends in the thread
    QThread m_thread;
    QTimer m_clock;
    QElapsedTimer m_sinceTick;
    int m_speed = 60;
    int m_handRuns = 0;
    int m_savedLaps = 0;
    int m_savedRuns = 0;
    bool m_awaitsReload = false;
    bool m_hasNews = false;
};
