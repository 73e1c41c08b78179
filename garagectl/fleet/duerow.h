#pragma once

#include "garagectl/fleet/fleetstatus.h"
#include "garagectl/fleet/meters.h"

#include <QVector>

/// The share of a limit from which an operation is due soon, unless the user says otherwise.
constexpr double defaultSoonShare = 0.8;

enum class DueState {
    Open, ///< the latest record is open
    Due, ///< a limit is exceeded
    Soon, ///< a limit is nearly used up
    Ok,
    Never ///< limits, but no record from which to count
};

/// One operation, or the open complaint, of one kart.
struct DueRow
{
    int carId = noId;
    QString carNumber;
    QString carModel;
    int opId = complaintOperationId;
    QString operation; ///< its name; the text of a complaint
    DueState state = DueState::Ok;
    bool isRecorded = false; ///< false: `stat` is empty
    OperationStat stat;
    Limits limits;
    bool isPending = false; ///< the module reports it to the host as due

    bool needsWork() const { return state == DueState::Open || state == DueState::Due; }
};

/// One row per kart and operation that has a limit or a record, and per open complaint. Kart by kart in the
/// order of the table, the complaint first, then by operation id: the order of the module's own list. An
/// operation is "soon" from this share of a limit on.
QVector<DueRow> dueRows(const FleetStatus &fleet, double soonShare);
