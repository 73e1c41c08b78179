#pragma once

#include "data/immediatetransaction.h"
#include "data/records.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>

/// A service operation or complaint as a person enters it.
struct ServiceRecord
{
    int carId = noId;
    int opId = complaintOperationId;
    QDateTime opTime; ///< any zone; stored in UTC
    int personId = noId;
    QString personName;
    QString comment;
};

/// A service record as the remote side sends it.
struct RemoteServiceRecord
{
    qint64 remoteId = noId;
    int carId = noId;
    int opId = complaintOperationId;
    QString opTime; ///< stored as received
    int personId = noId;
    QString personName;
    QString comment;
    int localId = noId; ///< the local record that the remote side worked on, or -1

    /// Missing keys yield the defaults. If the service code is that of a personnel entry (the last that
    /// matches), this person overrides the operator named in the record.
    [[nodiscard]] static RemoteServiceRecord fromJson(const QJsonObject &json, const QJsonArray &personal);
};

/// The writes of the service log (table `maintainance`), each in a transaction of its own. A statement
/// that fails is ignored.
namespace ServiceRecordStore {

/// Adds a done record.
void addServiceDone(GarageDatabase &database, const ServiceRecord &record);
/// Adds an open record. The local id of its row; noId if nothing was stored.
int addComplaint(GarageDatabase &database, const ServiceRecord &record);
/// Replaces time, person and comment of a record; its car and operation stay.
void amendComplaint(GarageDatabase &database, int localId, const ServiceRecord &record);

/// True if the deletion was committed, even if its statement failed.
bool remove(GarageDatabase &database, int localId, ImmediateTransaction::RetryPredicate mayRetry = {});

/// Stores a batch, all or none of it: each record updates the rows that have its remote id or its local id
/// and marks them done, or is added as done if there are none. True if the batch was committed, even if
/// statements in it failed.
bool storeRemote(GarageDatabase &database, const QVector<RemoteServiceRecord> &records,
                 ImmediateTransaction::RetryPredicate mayRetry = {});

/// The SQL by which storeRemote() looks for the rows of a record.
[[nodiscard]] QString remoteUpdateStatement();

} // namespace ServiceRecordStore
