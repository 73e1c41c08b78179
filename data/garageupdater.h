#pragma once

#include "data/garagedatabase.h"
#include "models/maintainancemodel.h"
#include "models/servicelogmodel.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QThread>

#include <atomic>
#include <memory>

/// The statistics loader: reads the maintenance status, the service log and the operations, and writes
/// deletions and remote records, all without blocking the GUI thread. Lives in a thread of its own from
/// construction to destruction; its slots are called through queued connections and run there one at a time,
/// and both signals come from there. The other functions are called from outside that thread.
class GarageUpdater final : public QObject
{
    Q_OBJECT
public:
    GarageUpdater();
    /// Stops.
    ~GarageUpdater() override;

    /// Interrupts the current reload, postpones later ones, and waits until the writes requested so far are
    /// done and announced; 10 s at most. Writes that failed on a busy database are still tried after that.
    void finishWrites();
    /// Continues after finishWrites(), with the postponed reload.
    void resumeReloads();
    /// Finishes the writes and ends the thread, within 10 s of this call or of finishWrites() before it.
    /// Writes that were not possible by then are dropped and not announced. Without an application object no
    /// write is possible any more; the thread ends nevertheless.
    void stop();

signals:
    /// One complete reload: cars in the order of their table, the service log newest first.
    void garageStatsUpdated(QList<MaintainanceModel::MaintainanceItem> mlist,
                            QList<ServiceLogModel::ServiceLogItem> serviceLog, QMap<int, QString> operations);
    /// A message for the host.
    void pluginSignal(QString module, QString event, QJsonObject jsonData);

public slots:
    /// Reads everything again and sends "update_pending_service", then garageStatsUpdated; both also when the
    /// database cannot be read.
    void reloadStats();
    /// Stores the remote side's records as done, reloads, and sends "remote_service_move_to_archive" unless
    /// nothing of the batch was stored.
    void updateService(QJsonArray serviceOps, QJsonArray personalList);
    /// Deletes a service record, sends "remote_service_delete", and reloads. `remoteId` -1: not a remote one.
    void deleteOperation(int id, int remoteId);

private:
    void openDatabase();
    void closeDatabase();
    void beginFinishing();
    bool isFinishing() const;
    /// While stopping: no write is tried any more.
    bool isTimeUp() const;
    /// Whether the current reload must be abandoned; records that it is due again.
    bool mustEndReload();
    bool mustInterruptStatement();
    void send(const QString &event, const QJsonObject &jsonData);

    QThread m_thread;
    std::unique_ptr<GarageDatabase> m_database; ///< made and destroyed in the thread
    const QString m_moduleName;
    std::atomic<qint64> m_deadline; ///< of finishing, in milliseconds of QDeadlineTimer
    std::atomic<bool> m_stopping {false};
    // Used in the thread alone.
    bool m_isReading = false;
    bool m_isReloadDue = false; ///< a reload was interrupted or put off
};
