#include "models/maintainancefilterproxy.h"

#include "data/duerule.h"
#include "models/maintainancemodel.h"

#include <algorithm>

MaintainanceFilterProxy::MaintainanceFilterProxy(QObject *parent) : QSortFilterProxyModel(parent)
{
}

void MaintainanceFilterProxy::setMaintainanceModel(MaintainanceModel *model)
{
    m_model = model;
    setSourceModel(model);
}

void MaintainanceFilterProxy::setReglament(const ReglamentSource *reglament)
{
    m_reglament = reglament;
    invalidateFilter();
}

void MaintainanceFilterProxy::setModelFilter(const QString &text, int enabled)
{
    const QString filter = enabled ? text : QString();
    if (filter == m_modelFilter)
        return;
    m_modelFilter = filter;
    invalidateFilter();
}

void MaintainanceFilterProxy::setNeedsServiceOnly(int on)
{
    if (on == m_needsServiceOnly)
        return;
    m_needsServiceOnly = on;
    invalidateFilter();
}

void MaintainanceFilterProxy::resetFilters()
{
    setModelFilter(QString(), 0);
    setNeedsServiceOnly(0);
}

void MaintainanceFilterProxy::refilter()
{
    invalidateFilter();
}

void MaintainanceFilterProxy::sort(int column, Qt::SortOrder order)
{
    if (m_model)
        m_model->sort(column, order);
}

bool MaintainanceFilterProxy::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    Q_UNUSED(sourceParent)
    if (!m_model)
        return true;
    if (sourceRow < 0 || sourceRow >= m_model->rowCount())
        return false;
    const MaintainanceItem &item = m_model->itemAt(sourceRow);
    if (!m_modelFilter.isEmpty() && item.model != m_modelFilter)
        return false;
    if (!m_needsServiceOnly || !m_reglament)
        return true;
    return isOverLimit(item) || item.hasOpenOperation();
}

bool MaintainanceFilterProxy::isOverLimit(const MaintainanceItem &item) const
{
    const auto exceeds = [&item](const ModelReglament &entry) {
        return std::any_of(item.ops.cbegin(), item.ops.cend(), [&entry](const OperationStat &stat) {
            const auto limit = entry.limits.constFind(stat.opId);
            return limit != entry.limits.cend() && DueRule::isDueForFilter(stat, *limit);
        });
    };
    const QList<ModelReglament> &entries = m_reglament->entries();
    return std::any_of(entries.cbegin(), entries.cend(), [&](const ModelReglament &entry) {
        return entry.model == item.model && exceeds(entry);
    });
}
