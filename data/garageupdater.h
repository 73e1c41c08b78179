#pragma once

#include "data/garagedatabase.h"
#include "models/maintainancemodel.h"
#include "models/servicelogmodel.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QThread>

#include <atomic>
#include <memory>

/// The statistics loader: reads the maintenance status, the journal and the operations off the GUI thread,
/// and carries out the writes that must not block it. Lives in a thread of its own from construction to
/// destruction; its slots are called through queued connections and run there one at a time, and both
/// signals come from there.
class GarageUpdater final : public QObject
{
    Q_OBJECT
public:
    GarageUpdater();
    /// Carries out the writes that were already asked for, announces them, and ends the thread; no further
    /// reload. A write for which the database stays busy is given up without a word, as are those behind it,
    /// so that another program's lock holds this up for at most 10 s. Without an application object nothing
    /// can be carried out any more; the thread ends all the same.
    ~GarageUpdater() override;

signals:
    /// One complete reload: cars in the order of their table, the journal newest first.
    void garageStatsUpdated(QList<MaintainanceModel::MaintainanceItem> mlist,
                            QList<ServiceLogModel::ServiceLogItem> serviceLog, QMap<int, QString> operations);
    /// A message for the host.
    void pluginSignal(QString module, QString event, QJsonObject jsonData);

public slots:
    /// Reads everything anew and sends "update_pending_service", then garageStatsUpdated; both also when the
    /// database cannot be read.
    void reloadStats();
    /// Stores the remote side's records as done, reloads, and tells the host which it may archive.
    void updateService(QJsonArray serviceOps, QJsonArray personalList);
    /// Deletes a service record, tells the host, and reloads. `remoteId` -1: never was a remote one.
    void deleteOperation(int id, int remoteId);

private:
    void openDatabase();
    void closeDatabase();
    bool isStopping() const { return m_stopping; }
    bool mayKeepTrying();
    void send(const QString &event, const QJsonObject &jsonData);

    QThread m_thread;
    std::unique_ptr<GarageDatabase> m_database; ///< made and destroyed in the thread
    const QString m_moduleName;
    std::atomic<bool> m_stopping {false};
    QElapsedTimer m_sinceStop; ///< started before m_stopping is set
    bool m_gaveUp = false; ///< a write was given up while stopping; those behind it are not tried
};
