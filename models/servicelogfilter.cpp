#include "models/servicelogfilter.h"

#include "data/columnkeys.h"
#include "models/servicelogmodel.h"

ServiceLogFilter::ServiceLogFilter(QObject *parent) : QSortFilterProxyModel(parent)
{
}

void ServiceLogFilter::setSourceModel(QAbstractItemModel *sourceModel)
{
    m_log = qobject_cast<ServiceLogModel *>(sourceModel);
    QSortFilterProxyModel::setSourceModel(sourceModel);
}

QVariant ServiceLogFilter::data(const QModelIndex &index, int role) const
{
    if (role == Qt::DisplayRole && m_log && index.isValid()
        && m_log->columnKey(mapToSource(index).column()) == ColumnKeys::position)
        return index.row() + 1;
    return QSortFilterProxyModel::data(index, role);
}

void ServiceLogFilter::setModelFilter(const QString &model)
{
    m_modelFilter = model;
    invalidateFilter();
}

void ServiceLogFilter::setNumberFilter(const QString &fragment)
{
    m_numberFilter = fragment;
    invalidateFilter();
}

void ServiceLogFilter::setOperationFilter(int operation)
{
    m_operationFilter = operation;
    invalidateFilter();
}

void ServiceLogFilter::reset()
{
    m_modelFilter.clear();
    m_numberFilter.clear();
    m_operationFilter = anyOperation;
    invalidateFilter();
}

bool ServiceLogFilter::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    Q_UNUSED(sourceParent)
    if (!m_log || sourceRow < 0 || sourceRow >= m_log->rowCount())
        return false;
    const ServiceLogItem &item = m_log->itemAt(sourceRow);
    return (m_modelFilter.isEmpty() || item.model == m_modelFilter)
        && (m_numberFilter.isEmpty() || item.num.contains(m_numberFilter, Qt::CaseInsensitive))
        && acceptsOperation(item.opId, item.state);
}

bool ServiceLogFilter::acceptsOperation(int opId, int state) const
{
    switch (m_operationFilter) {
    case anyOperation:
        return true;
    case pendingOnly:
        return state == 0;
    default:
        return opId == m_operationFilter;
    }
}
