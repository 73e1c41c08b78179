#pragma once

#include "host/database/hostconnection.h"
#include "host/database/hosttransaction.h"
#include "host/database/walkeeper.h"
#include "host/result.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

#include <limits>
#include <memory>
#include <optional>

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
    QString requestKey; // of the page that made it; empty if none did

    /// An element of the array that "remote_service_data" carries.
    QJsonObject toJson() const;
};

/// The remote side's records in their SQLite file.
class RemoteStore final
{
public:
    explicit RemoteStore(const QString &path);

    /// Creates the missing table and columns. `usedRemoteId` is the highest id in the track's database.
    Result prepare(int usedRemoteId);

    /// Stores the record under a new id, which it returns; -1 on failure.
    int add(const RemoteRecord &record);
    /// Calls `write` in a transaction, as HostTransaction::run().
    template<typename Write> Result transact(Write write)
    {
        Result result = HostTransaction::run(m_connection, write);
        if (m_keeper)
            m_keeper->touch();
        return result;
    }
    Result setState(const QVector<int> &ids, RemoteRecord::State state);
    /// Marks the records that belong to the deleted local record.
    Result markDeleted(int remoteId, int localId);

    /// Latest first; at most `limit`.
    QVector<RemoteRecord> latest(int limit);
    /// The oldest first; at most `limit`.
    QVector<RemoteRecord> inState(RemoteRecord::State state, int limit = std::numeric_limits<int>::max());
    /// Latest first; at most `limit`. `time` is a UTC time as in doneTime.
    QVector<RemoteRecord> doneSince(const QString &time, int limit);
    /// The record that was made with that key.
    std::optional<RemoteRecord> withKey(const QString &requestKey);
    /// Whether a record that the track has not archived yet completes that local record.
    bool isTaken(int localId);
    int count(RemoteRecord::State state);

    /// For any thread, after prepare(): waits until all that has been written is on the disk. Each write is
    /// by then safe from the kill of the process only. False if that fails.
    bool sync() { return m_keeper && m_keeper->sync(); }

    HostConnection &connection() { return m_connection; }

private:
    bool addMissingColumns();
    QVector<RemoteRecord> read(const QString &condition, const QVariantList &values);

    HostConnection m_connection;
    std::unique_ptr<WalKeeper> m_keeper;
};
