#pragma once

#include "data/immediatetransaction.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>

/// A service operation or complaint as a person enters it.
struct ServiceRecord
{
    int carId = -1;
    int opId = -1;
    QDateTime opTime; ///< any zone; stored in UTC
    int personId = -1;
    QString personName;
    QString comment;
};

/// A service record as the remote side sends it.
struct RemoteServiceRecord
{
    int remoteId = -1;
    int carId = -1;
    int opId = -1;
    QString opTime; ///< stored as it came
    int personId = -1;
    QString personName;
    QString comment;
    int localId = -1; ///< the local record that the remote side worked on, or -1

    /// Missing keys take their defaults. A service code of a personnel entry (the last that matches) decides
    /// over the operator named in the record.
    static RemoteServiceRecord fromJson(const QJsonObject &json, const QJsonArray &personal);
};

/// The writes of the service journal (table `maintainance`), each in a transaction of its own. A statement
/// that fails is ignored; the answers say whether the transaction was committed.
namespace ServiceRecordStore {

/// Adds a done record.
bool addServiceDone(GarageDatabase &database, const ServiceRecord &record);
/// Adds an open record.
bool addComplaint(GarageDatabase &database, const ServiceRecord &record);
/// Replaces time, person and comment of a record; its car and operation stay.
bool amendComplaint(GarageDatabase &database, int localId, const ServiceRecord &record);

bool remove(GarageDatabase &database, int localId, ImmediateTransaction::KeepTrying keepTrying = {});

/// Stores a batch, all or none of it: each record updates the rows that bear its remote id or its local id,
/// which are done then, or is added as a done one if there are none.
bool storeRemote(GarageDatabase &database, const QVector<RemoteServiceRecord> &records,
                 ImmediateTransaction::KeepTrying keepTrying = {});

} // namespace ServiceRecordStore
