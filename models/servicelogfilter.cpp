#include "models/servicelogfilter.h"

#include "data/columnkeys.h"
#include "models/servicelogmodel.h"

ServiceLogFilter::ServiceLogFilter(QObject *parent) : TableFilterProxy(parent)
{
}

QVariant ServiceLogFilter::data(const QModelIndex &index, int role) const
{
    if (role == Qt::DisplayRole && index.isValid()) {
        const auto *log = qobject_cast<const ServiceLogModel *>(sourceModel());
        if (log && log->columnKey(index.column()) == ColumnKeys::position)
            return index.row() + 1;
    }
    return TableFilterProxy::data(index, role);
}

void ServiceLogFilter::setModelFilter(const QString &model)
{
    m_modelFilter = model;
    refilter();
}

void ServiceLogFilter::setNumberFilter(const QString &numberPart)
{
    m_numberFilter = numberPart;
    refilter();
}

void ServiceLogFilter::setOperationFilter(int operation)
{
    m_operationFilter = operation;
    refilter();
}

void ServiceLogFilter::reset()
{
    m_modelFilter.clear();
    m_numberFilter.clear();
    m_operationFilter = anyOperation;
    refilter();
}

bool ServiceLogFilter::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    const auto *log = qobject_cast<const ServiceLogModel *>(sourceModel());
    if (!log || sourceRow < 0 || sourceRow >= log->rowCount(sourceParent))
        return false;

    const ServiceLogItem &item = log->itemAt(sourceRow);
    if (!m_modelFilter.isEmpty() && item.model != m_modelFilter)
        return false;
    if (!m_numberFilter.isEmpty() && !item.num.contains(m_numberFilter, Qt::CaseInsensitive))
        return false;
    switch (m_operationFilter) {
    case anyOperation:
        return true;
    case pendingOnly:
        return item.state == OpenState;
    default:
        return item.opId == m_operationFilter;
    }
}
