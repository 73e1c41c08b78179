#include "data/duelist.h"

#include "data/datetimetext.h"
#include "data/duerule.h"

#include <QJsonObject>

namespace {

QJsonObject pendingService(const MaintainanceItem &car, const OperationStat &stat, int opId,
                           const QString &opName)
{
    return {{QStringLiteral("carId"), car.carId},
            {QStringLiteral("carNum"), car.num},
            {QStringLiteral("carModel"), car.model},
            {QStringLiteral("opId"), opId},
            {QStringLiteral("opName"), opName},
            {QStringLiteral("opDateTime"), DateTimeText::forJson(stat.lastDone.toUtc())},
            {QStringLiteral("localId"), stat.localId}};
}

void appendOpenComplaint(QJsonArray &pending, const MaintainanceItem &car)
{
    if (!car.hasOpenComplaint())
        return;
    const OperationStat complaint = car.operation(complaintOperationId);
    pending.append(pendingService(car, complaint, complaintOperationId, complaint.comment));
}

void appendScheduled(QJsonArray &pending, const MaintainanceItem &car, const ModelReglament &reglament)
{
    for (auto it = car.ops.cbegin(); it != car.ops.cend(); ++it) {
        const auto limit = reglament.limits.constFind(it.key());
        if (limit == reglament.limits.cend())
            continue;
        if (DueRule::isPending(*it, limit->limits))
            pending.append(pendingService(car, *it, limit->opId, limit->opName));
    }
}

QJsonObject operationStatus(const OperationStat &stat)
{
    // "tl" carries the laps and "tr" the runs.
    return {{QStringLiteral("tt"), stat.totalTime},
            {QStringLiteral("tl"), stat.laps},
            {QStringLiteral("tr"), stat.runs},
            {QStringLiteral("dt"), DateTimeText::forJson(stat.lastDone.toUtc())}};
}

} // namespace

QJsonArray DueList::pendingServices(const QList<MaintainanceItem> &cars,
                                    const QList<ModelReglament> &reglament)
{
    QJsonArray pending;
    for (const MaintainanceItem &car : cars) {
        appendOpenComplaint(pending, car);
        for (const ModelReglament &entry : reglament) {
            if (entry.model == car.model)
                appendScheduled(pending, car, entry);
        }
    }
    return pending;
}

QJsonArray DueList::carStatuses(const QList<MaintainanceItem> &cars)
{
    QJsonArray statuses;
    for (const MaintainanceItem &car : cars) {
        QJsonObject operations;
        for (auto it = car.ops.cbegin(); it != car.ops.cend(); ++it)
            operations.insert(QString::number(it.key()), operationStatus(*it));
        statuses.append(
            QJsonObject {{QStringLiteral("carId"), car.carId}, {QStringLiteral("opsStatus"), operations}});
    }
    return statuses;
}
