#include "host/track/laprecorder.h"

#include "host/database/hostconnection.h"
#include "host/database/hosttransaction.h"
#include "host/database/timestamp.h"

#include <utility>

namespace {
constexpr int retryDelay = 500; // milliseconds
} // namespace

LapRecorder::LapRecorder(const QString &databasePath) : m_path(databasePath), m_retry(this)
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(retryDelay);
    connect(&m_retry, &QTimer::timeout, this, &LapRecorder::saveWaiting);
}

LapRecorder::~LapRecorder()
{
    if (!m_waiting.isEmpty() && open())
        writeWaiting();
}

void LapRecorder::record(const QVector<RecordedLap> &laps, const QVector<int> &finishedRuns)
{
    m_waiting += laps;
    m_waitingRuns += finishedRuns;
    // An attempt on a locked file blocks this thread for seconds: new laps join the next attempt.
    if (!m_retry.isActive())
        saveWaiting();
}

void LapRecorder::saveWaiting()
{
    if (m_waiting.isEmpty() && m_waitingRuns.isEmpty())
        return;
    const int count = int(m_waiting.size());
    if (!open() || !writeWaiting()) {
        emit failed(m_connection->errorText());
        m_retry.start();
        return;
    }
    emit lapsSaved(count);
    const QVector<int> runs = std::exchange(m_waitingRuns, {});
    for (const int run : runs)
        emit runSaved(m_runIds.take(run));
}

bool LapRecorder::open()
{
    if (m_lastRunId >= 0)
        return true;
    if (!m_connection)
        m_connection = std::make_unique<HostConnection>(m_path);
    const QVariant last = m_connection->value(QStringLiteral("SELECT ifnull(max(run_id),0) FROM laps"));
    // Run ids continue those in the file, so that new runs do not mix with old ones.
    if (last.isValid())
        m_lastRunId = last.toInt();
    return last.isValid();
}

bool LapRecorder::writeWaiting()
{
    HostTransaction transaction(*m_connection);
    if (!transaction.isActive())
        return false;
    if (!insertWaiting() || !transaction.commit())
        return false;
    m_waiting.clear();
    return true;
}

bool LapRecorder::insertWaiting()
{
    QSqlQuery insert = m_connection->prepared(
        QStringLiteral("INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) VALUES (?,?,?,?)"));
    TimestampFormatter timestamp;
    for (const RecordedLap &lap : qAsConst(m_waiting)) {
        insert.addBindValue(lap.carId);
        insert.addBindValue(runIdOf(lap.runNumber));
        insert.addBindValue(timestamp.format(lap.finished));
        insert.addBindValue(lap.milliseconds);
        if (!m_connection->exec(insert))
            return false;
    }
    return true;
}

int LapRecorder::runIdOf(int runNumber)
{
    const auto known = m_runIds.constFind(runNumber);
    return known != m_runIds.constEnd() ? *known : *m_runIds.insert(runNumber, ++m_lastRunId);
}
