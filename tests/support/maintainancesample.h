#pragma once

#include "data/reglamentsource.h"

#include <QDate>
#include <QRandomGenerator>

/// Cars, operations and limits to fill a maintenance table with.
namespace MaintainanceSample {

class Reglament final : public ReglamentSource
{
public:
    const QList<ModelReglament> &entries() const override
    {
        ++reads;
        return list;
    }

    /// A schedule whose first entry has operations of these ids, named "Operation <id>", without limits.
    static Reglament ofOperations(const QList<int> &opIds)
    {
        Reglament reglament;
        ModelReglament entry;
        entry.model = "Sodi";
        for (int opId : opIds)
            entry.limits.insert(opId, {opId, QString("Operation %1").arg(opId), 0, 0, 0});
        reglament.list.append(entry);
        return reglament;
    }

    QList<ModelReglament> list;
    mutable int reads = 0;
};

inline QDateTime noonOf(int day)
{
    return QDateTime(QDate(2024, 5, day), QTime(12, 0));
}

inline OperationStat done(int opId, const QDateTime &lastDone, int seconds = 0, int runs = 0, int laps = 0)
{
    OperationStat stat;
    stat.opId = opId;
    stat.lastDone = lastDone;
    stat.totalTime = seconds;
    stat.runs = runs;
    stat.laps = laps;
    stat.state = DoneState;
    return stat;
}

inline OperationStat open(int opId, const QDateTime &lastDone = {})
{
    OperationStat stat = done(opId, lastDone);
    stat.state = OpenState;
    return stat;
}

inline MaintainanceItem car(int carId, const QString &num, const QString &model,
                            const QList<OperationStat> &stats = {})
{
    MaintainanceItem item;
    item.carId = carId;
    item.num = num;
    item.model = model;
    for (const OperationStat &stat : stats)
        item.ops.insert(stat.opId, stat);
    return item;
}

/// A car with operations 1 to 3 in any state, of few models, dates and counts, so that many are equal.
inline MaintainanceItem randomCar(QRandomGenerator &random, int carId)
{
    static const QStringList numbers {"9", "10", "3B", "A5", QString()};
    static const QStringList models {"Sodi", "sodi", "Birel", QString()};
    MaintainanceItem item =
        car(carId, numbers.at(random.bounded(numbers.size())), models.at(random.bounded(models.size())));
    for (int opId = 1; opId <= 3; ++opId) {
        if (random.bounded(3) == 0)
            continue;
        const QDateTime lastDone = random.bounded(4) == 0 ? QDateTime() : noonOf(1 + random.bounded(3));
        OperationStat stat = done(opId, lastDone, random.bounded(3), random.bounded(3), random.bounded(3));
        stat.state = random.bounded(2);
        item.ops.insert(opId, stat);
    }
    return item;
}

} // namespace MaintainanceSample
