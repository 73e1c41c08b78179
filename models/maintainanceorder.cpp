#include "models/maintainanceorder.h"

#include "data/numbertext.h"
#include "models/maintainancemodel.h"

MaintainanceOrder::MaintainanceOrder(std::optional<int> opId, int mode, Qt::SortOrder direction)
    : m_opId(opId), m_mode(mode), m_isAscending(direction == Qt::AscendingOrder)
{
}

MaintainanceOrder::Key MaintainanceOrder::key(const MaintainanceItem &car) const
{
    return {car.model, leadingInteger(car.num).value_or(noId), value(car)};
}

bool MaintainanceOrder::operator()(const Key &a, const Key &b) const
{
    if (a.value.has_value() != b.value.has_value())
        return a.value.has_value();
    if (!a.value)
        return precedesByModelAndNumber(a, b);
    return m_isAscending ? *a.value < *b.value : *a.value > *b.value;
}

std::optional<qint64> MaintainanceOrder::value(const MaintainanceItem &car) const
{
    if (!m_opId)
        return std::nullopt;
    const auto stat = car.ops.constFind(*m_opId);
    if (stat == car.ops.cend())
        return std::nullopt;

    switch (m_mode) {
    case MaintainanceModel::SortByLastDone:
        if (!stat->lastDone.isValid())
            return std::nullopt;
        return stat->lastDone.toMSecsSinceEpoch();
    case MaintainanceModel::SortByTotalTime:
        return stat->totalTime;
    case MaintainanceModel::SortByRuns:
        return stat->runs;
    case MaintainanceModel::SortByLaps:
        return stat->laps;
    default:
        return std::nullopt;
    }
}

bool MaintainanceOrder::precedesByModelAndNumber(const Key &a, const Key &b) const
{
    if (a.model == b.model)
        return m_isAscending ? a.number < b.number : a.number > b.number;
    return m_isAscending ? a.model < b.model : a.model > b.model;
}
