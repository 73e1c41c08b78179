#pragma once

#include "host/database/hostconnection.h"
#include "host/result.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

/// A service record of the remote side.
struct RemoteRecord
{
    enum State {
        Kept, // stored in the track's database already
        Waiting, // to be sent to the track
        Sent, // not yet archived
        Archived, // the track has stored it
        Deleted // the track has deleted it
    };

    int id = -1;
    int carId = -1;
    int opId = -1;
    QString opName;
    QString doneTime; // UTC, "yyyy-MM-ddThh:mm:ss.zzzZ"
    int operatorId = -1;
    QString operatorName;
    QString serviceCode;
    QString comment;
    int localId = -1;
    State state = Waiting;

    /// An element of the array that "remote_service_data" carries.
    QJsonObject toJson() const;
};

/// The remote side's records in their SQLite file.
class RemoteStore final
{
public:
    explicit RemoteStore(const QString &path);

    /// Creates the missing table. `usedRemoteId` is the highest id in the track's database.
    Result prepare(int usedRemoteId);

    /// Stores the record under a new id, which it returns.
    int add(const RemoteRecord &record);
    Result setState(const QVector<int> &ids, RemoteRecord::State state);
    /// Marks the records that belong to the deleted local record.
    Result markDeleted(int remoteId, int localId);

    /// Latest first; at most `limit`.
    QVector<RemoteRecord> latest(int limit);
    QVector<RemoteRecord> inState(RemoteRecord::State state);
    int count(RemoteRecord::State state);

private:
    QVector<RemoteRecord> read(const QString &condition, const QVariantList &values);

    HostConnection m_connection;
};
