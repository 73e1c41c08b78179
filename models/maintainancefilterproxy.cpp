#include "models/maintainancefilterproxy.h"

#include "data/duerule.h"

#include <algorithm>

MaintainanceFilterProxy::MaintainanceFilterProxy(QObject *parent) : TableFilterProxy(parent)
{
}

void MaintainanceFilterProxy::setModelFilter(const QString &text, bool enabled)
{
    setFilters(enabled ? text : QString(), m_needsServiceOnly);
}

void MaintainanceFilterProxy::setNeedsServiceOnly(bool on)
{
    setFilters(m_modelFilter, on);
}

void MaintainanceFilterProxy::resetFilters()
{
    setFilters(QString(), false);
}

void MaintainanceFilterProxy::setReglament(const ReglamentSource *reglament)
{
    if (m_reglament == reglament)
        return;
    m_reglament = reglament;
    refilter();
}

void MaintainanceFilterProxy::setMaintainanceModel(MaintainanceModel *model)
{
    setSourceModel(model);
}

void MaintainanceFilterProxy::setSourceModel(QAbstractItemModel *model)
{
    m_model = qobject_cast<MaintainanceModel *>(model);
    TableFilterProxy::setSourceModel(model);
}

void MaintainanceFilterProxy::sort(int column, Qt::SortOrder order)
{
    if (sourceModel())
        sourceModel()->sort(column, order);
}

bool MaintainanceFilterProxy::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (!m_model)
        return true;
    if (sourceRow < 0 || sourceRow >= m_model->rowCount(sourceParent))
        return false;

    const MaintainanceItem &car = m_model->itemAt(sourceRow);
    if (!m_modelFilter.isEmpty() && car.model != m_modelFilter)
        return false;
    if (!m_needsServiceOnly || !m_reglament)
        return true;
    return isOverLimit(car) || car.hasOpenOperation();
}

void MaintainanceFilterProxy::setFilters(const QString &modelFilter, bool needsServiceOnly)
{
    if (m_modelFilter == modelFilter && m_needsServiceOnly == needsServiceOnly)
        return;
    m_modelFilter = modelFilter;
    m_needsServiceOnly = needsServiceOnly;
    refilter();
}

bool MaintainanceFilterProxy::isOverLimit(const MaintainanceItem &car) const
{
    const QList<ModelReglament> &entries = m_reglament->entries();
    return std::any_of(entries.cbegin(), entries.cend(), [&car](const ModelReglament &entry) {
        return entry.model == car.model
            && std::any_of(car.ops.cbegin(), car.ops.cend(), [&entry](const OperationStat &stat) {
                   const auto limit = entry.limits.constFind(stat.opId);
                   return limit != entry.limits.cend() && DueRule::isDueForFilter(stat, limit->limits);
               });
    });
}
