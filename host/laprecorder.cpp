#include "laprecorder.h"

#include "hostconnection.h"
#include "timestamptext.h"

#include <utility>

LapRecorder::LapRecorder(const QString &databasePath) : m_path(databasePath)
{
}

LapRecorder::~LapRecorder()
{
    if (!m_waiting.isEmpty())
        writeWaiting();
}

void LapRecorder::record(const QVector<RecordedLap> &laps, const QVector<int> &finishedRuns)
{
    if (!m_connection)
        open();
    m_waiting += laps;
    m_waitingRuns += finishedRuns;
    if (m_waiting.isEmpty() && m_waitingRuns.isEmpty())
        return;
    const int count = m_waiting.size();
    if (!writeWaiting()) {
        emit failed(m_connection->errorText());
        return;
    }
    emit lapsSaved(count);
    const QVector<int> runs = std::exchange(m_waitingRuns, {});
    for (const int run : runs)
        emit runSaved(m_runIds.take(run));
}

void LapRecorder::open()
{
    m_connection = std::make_unique<HostConnection>(m_path);
    m_lastRunId = m_connection->value(QStringLiteral("SELECT max(run_id) FROM laps")).toInt();
}

bool LapRecorder::writeWaiting()
{
    HostTransaction transaction(*m_connection);
    if (!transaction.isActive())
        return false;
    TimestampText timestamp;
    for (const RecordedLap &lap : qAsConst(m_waiting)) {
        if (!m_connection->exec(
                QStringLiteral("INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) VALUES (?,?,?,?)"),
                {lap.carId, runIdOf(lap.runNumber), timestamp.of(lap.finished), lap.milliseconds}))
            return false;
    }
    if (!transaction.commit())
        return false;
    m_waiting.clear();
    return true;
}

int LapRecorder::runIdOf(int runNumber)
{
    const auto known = m_runIds.constFind(runNumber);
    return known != m_runIds.constEnd() ? *known : *m_runIds.insert(runNumber, ++m_lastRunId);
}
