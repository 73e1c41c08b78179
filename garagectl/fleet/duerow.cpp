#include "garagectl/fleet/duerow.h"

#include "data/duerule.h"

#include <algorithm>

namespace {

DueState stateOf(const OperationStat &stat, const Limits &limits, double soonShare)
{
    if (stat.state == OpenState)
        return DueState::Open;
    if (DueRule::isDue(stat, limits))
        return DueState::Due;
    const std::optional<Meters::Share> share = Meters::largestShare(stat, limits);
    return share && share->value >= soonShare ? DueState::Soon : DueState::Ok;
}

DueRow emptyRow(const MaintainanceItem &car, int opId, const QString &operation)
{
    DueRow row;
    row.carId = car.carId;
    row.carNumber = car.num;
    row.carModel = car.model;
    row.opId = opId;
    row.operation = operation;
    return row;
}

DueRow complaintRow(const MaintainanceItem &car)
{
    const OperationStat complaint = car.operation(complaintOperationId);
    DueRow row = emptyRow(car, complaintOperationId, complaint.comment);
    row.state = DueState::Open;
    row.isRecorded = true;
    row.stat = complaint;
    row.isPending = true;
    return row;
}

DueRow scheduledRow(const MaintainanceItem &car, const ReglamentLimit &limit, double soonShare)
{
    DueRow row = emptyRow(car, limit.opId, limit.opName);
    row.isRecorded = car.ops.contains(limit.opId);
    row.stat = car.operation(limit.opId);
    row.limits = limit.limits;
    if (row.isRecorded) {
        row.state = stateOf(row.stat, row.limits, soonShare);
        row.isPending = DueRule::isPending(row.stat, row.limits);
    } else {
        row.state = DueState::Never;
    }
    return row;
}

DueRow unscheduledRow(const MaintainanceItem &car, const OperationStat &stat, const QString &operation)
{
    DueRow row = emptyRow(car, stat.opId, operation);
    row.isRecorded = true;
    row.stat = stat;
    row.state = stat.state == OpenState ? DueState::Open : DueState::Ok;
    return row;
}

QMap<int, ReglamentLimit> limitsOf(const QString &model, const QList<ModelReglament> &reglament)
{
    const auto entry =
        std::find_if(reglament.cbegin(), reglament.cend(),
                     [&model](const ModelReglament &candidate) { return candidate.model == model; });
    return entry == reglament.cend() ? QMap<int, ReglamentLimit>() : entry->limits;
}

void appendRowsOf(const MaintainanceItem &car, const FleetStatus &fleet, double soonShare,
                  QVector<DueRow> &rows)
{
    if (car.hasOpenComplaint())
        rows.append(complaintRow(car));

    const QMap<int, ReglamentLimit> limits = limitsOf(car.model, fleet.reglament);
    QList<int> opIds = limits.keys();
    for (const int opId : car.ops.keys()) {
        if (!limits.contains(opId) && opId != complaintOperationId)
            opIds.append(opId);
    }
    std::sort(opIds.begin(), opIds.end());
    for (const int opId : qAsConst(opIds)) {
        const auto limit = limits.constFind(opId);
        if (limit == limits.cend())
            rows.append(unscheduledRow(car, car.operation(opId), fleet.operations.value(opId)));
        else if (limit->limits.hasAny() || car.ops.contains(opId))
            rows.append(scheduledRow(car, *limit, soonShare));
    }
}

} // namespace

QVector<DueRow> dueRows(const FleetStatus &fleet, double soonShare)
{
    QVector<DueRow> rows;
    for (const MaintainanceItem &car : fleet.cars)
        appendRowsOf(car, fleet, soonShare, rows);
    return rows;
}
