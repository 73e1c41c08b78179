#pragma once

#include <QHash>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <memory>

class HostConnection;

/// A lap for the shared `laps` table.
struct RecordedLap
{
    int carId;
    int runNumber; // the caller's number; the file gets an unused run id for each
    qint64 finished; // milliseconds since the epoch, UTC
    int milliseconds; // lap time
};

/// Writes laps in short transactions on a connection of its own. Lives in a worker thread. Keeps laps while
/// the database is locked and retries every 500 ms.
class LapRecorder final : public QObject
{
    Q_OBJECT
public:
    explicit LapRecorder(const QString &databasePath);
    ~LapRecorder() override;

    void record(const QVector<RecordedLap> &laps, const QVector<int> &finishedRuns);

signals:
    /// A batch of laps is committed.
    void lapsSaved(int count);
    /// Every lap of the run is committed.
    void runSaved(int runId);
    /// A batch could not be written; the recorder retries.
    void failed(const QString &reason);

private:
    void saveWaiting();
    bool open();
    bool writeWaiting();
    bool insertWaiting();
    int runIdOf(int runNumber);

    const QString m_path;
    std::unique_ptr<HostConnection> m_connection;
    QTimer m_retry;
    QVector<RecordedLap> m_waiting;
    QVector<int> m_waitingRuns;
    QHash<int, int> m_runIds; // by run number, of runs not yet finished
    int m_lastRunId = -1; // negative until it has been read
};
