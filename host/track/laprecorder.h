#pragma once

#include <QHash>
#include <QMetaType>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <memory>

class HostConnection;

/// A lap for the shared `laps` table.
struct RecordedLap
{
    int carId;
    int runNumber; // the recorder's caller tells runs apart by it; the file gets ids that nobody has used
    qint64 finished; // milliseconds since the epoch, UTC
    int milliseconds; // lap time
};
Q_DECLARE_METATYPE(QVector<RecordedLap>)

/// Writes laps as a timing system does: in a thread and a connection of its own, in short transactions. Laps
/// that meet a locked database are kept and tried again by itself.
class LapRecorder final : public QObject
{
    Q_OBJECT
public:
    explicit LapRecorder(const QString &databasePath);
    ~LapRecorder() override;

    void record(const QVector<RecordedLap> &laps, const QVector<int> &finishedRuns);

signals:
    /// Laps are in the file.
    void lapsSaved(int count);
    /// All laps of the run are in the file.
    void runSaved(int runId);
    void failed(const QString &reason);

private:
    void saveWaiting();
    bool open();
    bool writeWaiting();
    int runIdOf(int runNumber);

    const QString m_path;
    std::unique_ptr<HostConnection> m_connection;
    QTimer m_retry;
    QVector<RecordedLap> m_waiting;
    QVector<int> m_waitingRuns;
    QHash<int, int> m_runIds; // by run number, of runs not yet finished
    int m_lastRunId = -1; // negative until it has been read
};
