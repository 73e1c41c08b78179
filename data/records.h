#pragma once

#include "data/recordtime.h"

#include <QList>
#include <QMap>
#include <QString>

/// Operation id of a complaint: a free-text fault report or task instead of a service operation.
/// In combo boxes the same value means "none".
constexpr int complaintOperationId = -1;

/// Value of "no car", "no person", "no record" wherever an id is read or written.
constexpr int noId = -1;

/// Times of driving and their limits are kept in seconds, shown and edited in hours.
constexpr double secondsPerHour = 3600.0;

/// `operation_state` of a service record.
enum ServiceState {
    OpenState = 0, ///< a complaint or requested work that is not yet done
    DoneState = 1
};

/// The figures of one car since the latest record of one operation.
struct OperationStat
{
    int opId = 0;
    RecordTime lastDone; ///< of the latest record, open or done; invalid: never
    int totalTime = 0; ///< seconds of driving since `lastDone`
    int runs = 0;
    int laps = 0;
    int state = OpenState; ///< of the latest record
    QString comment;
    int localId = 0; ///< `maintainance.id` of the latest record
};

/// The maintenance status of one car. `ops` holds only operations that were recorded at least once.
struct MaintainanceItem
{
    int carId = noId;
    QString num;
    QString model; ///< links the car to the reglament of its model
    QMap<int, OperationStat> ops; ///< by operation id

    /// An operation that was never recorded reads as a default record.
    OperationStat operation(int opId) const { return ops.value(opId); }
    /// True if the latest record of any operation is still open.
    bool hasOpenOperation() const;
    /// True if the latest complaint was recorded and is still open.
    bool hasOpenComplaint() const;
};

/// One record of the service log.
struct ServiceLogItem
{
    int id = noId; ///< the local id
    int carId = noId;
    int remoteId = noId; ///< -1: not made by the remote side, or an id beyond 32 bits
    int state = OpenState;
    int opId = complaintOperationId;
    QString num; ///< empty if the car was deleted, as is `model`
    QString model;
    RecordTime opTime;
    QString opName; ///< empty for a complaint
    QString personName;
    QString comment;
};

/// The driving after which an operation is due again. A limit of 0 is no limit.
struct Limits
{
    int seconds = 0; ///< of driving
    int runs = 0;
    int laps = 0;

    bool hasAny() const { return seconds != 0 || runs != 0 || laps != 0; }
};

/// The limits of one operation for one car model.
struct ReglamentLimit
{
    int opId = complaintOperationId;
    QString opName;
    Limits limits;
};

/// The maintenance schedule of one car model.
struct ModelReglament
{
    QString model;
    QMap<int, ReglamentLimit> limits; ///< by operation id
};

/// Operation names by operation id.
using ServiceOperations = QMap<int, QString>;
