#include "host/track/track.h"

#include "host/fleet/fleetcontroller.h"
#include "host/plugin/pluginhost.h"

#include <QDateTime>

namespace {
constexpr int tickMilliseconds = 200;
constexpr int longestTick = 1000; // longer pauses of the GUI thread are not simulated afterwards
} // namespace

Track::Track(const QString &databasePath, FleetController &fleet, PluginHost &plugin, quint32 seed,
             QObject *parent)
    : QObject(parent)
    , m_fleet(fleet)
    , m_plugin(plugin)
    , m_simulation(seed)
    , m_recorder(new LapRecorder(databasePath))
{
    m_recorder->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_recorder, &QObject::deleteLater);
    connect(m_recorder, &LapRecorder::runSaved, this, &Track::onRunSaved);
    connect(m_recorder, &LapRecorder::failed, this, &Track::failed);
    connect(m_recorder, &LapRecorder::lapsSaved, this, [this](int count) {
        m_savedLaps += count;
        emit lapsSaved();
        emit changed();
    });
    m_thread.start();

    m_clock.setInterval(tickMilliseconds);
    connect(&m_clock, &QTimer::timeout, this, &Track::tick);
    connect(&fleet, &FleetController::carsAnnounced, this, &Track::refreshCars);
    connect(&plugin, &PluginHost::received, this, [this](const HostMessage &message) {
        if (message.event == QLatin1String("update_pending_service"))
            onReloadFinished();
    });
}

Track::~Track()
{
    // Queued behind the calls of record(), which must run before the thread quits.
    QMetaObject::invokeMethod(
        m_recorder, [this] { m_thread.quit(); }, Qt::QueuedConnection);
    m_thread.wait();
}

void Track::setLive(bool live)
{
    if (live == isLive())
        return;
    if (live) {
        refreshCars();
        m_sinceTick.start();
        m_clock.start();
    } else {
        m_clock.stop();
    }
    emit changed();
}

void Track::setSpeed(int factor)
{
    m_speed = qBound(slowest, factor, fastest);
}

void Track::recordRun(const QVector<int> &carIds, int laps, int lapMilliseconds)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const int run = -++m_manualRuns; // live runs count upwards
    QVector<RecordedLap> recorded;
    // Counted back from now: laps are one millisecond apart, and none is later than now.
    for (int lap = 0; lap < laps; ++lap) {
        for (const int car : carIds)
            recorded.append({car, run, now - (laps - 1 - lap), lapMilliseconds});
    }
    record(recorded, {run});
}

void Track::simulate(qint64 milliseconds)
{
    refreshCars();
    advance(milliseconds, milliseconds);
}

void Track::tick()
{
    const qint64 elapsed = std::min<qint64>(longestTick, m_sinceTick.restart());
    advance(elapsed * m_speed, elapsed);
}

void Track::advance(qint64 simulatedTime, qint64 realTime)
{
    const qint64 start = QDateTime::currentMSecsSinceEpoch() - realTime;
    const RaceSimulation::Step step = m_simulation.advance(simulatedTime);
    QVector<RecordedLap> laps;
    for (const SimulatedLap &lap : step.laps)
        laps.append(
            {lap.carId, lap.runNumber, start + qint64(lap.stepShare * double(realTime)), lap.milliseconds});
    record(laps, step.finishedRuns);
    emit changed();
}

void Track::record(const QVector<RecordedLap> &laps, const QVector<int> &finishedRuns)
{
    QMetaObject::invokeMethod(
        m_recorder, [this, laps, finishedRuns] { m_recorder->record(laps, finishedRuns); },
        Qt::QueuedConnection);
}

void Track::refreshCars()
{
    QVector<int> ids;
    for (const HostCar &car : m_fleet.cars().list()) {
        if (car.available)
            ids.append(car.id);
    }
    m_simulation.setAvailableCars(ids);
}

void Track::onRunSaved(int)
{
    ++m_savedRuns;
    m_plugin.send(QStringLiteral("run_closed"));
    // At high speed a run is shorter than a reload. Runs that end during a reload share the next message.
    if (m_awaitsReload)
        m_hasUnannouncedRun = true;
    else
        announceRun();
    emit changed();
}

void Track::announceRun()
{
    m_hasUnannouncedRun = false;
    m_awaitsReload = true;
    m_plugin.send(QStringLiteral("run_saved_to_db"));
}

void Track::onReloadFinished()
{
    m_awaitsReload = false;
    if (m_hasUnannouncedRun)
        announceRun();
}
