#include "settings/serviceoperationsmodel.h"

#include "data/columnkeys.h"

#include <algorithm>

ServiceOperationsModel::ServiceOperationsModel()
{
    appendColumn({tr("#"), Qt::AlignRight, 60, ColumnKeys::position, Qt::AlignCenter});
    appendColumn({tr("Операция"), Qt::AlignLeft, 140, ColumnKeys::name, Qt::AlignCenter});
}

int ServiceOperationsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_operations.size();
}

QVariant ServiceOperationsModel::data(const QModelIndex &index, int role) const
{
    if ((role == Qt::DisplayRole || role == Qt::EditRole) && isCell(index)) {
        const QString key = columnKey(index.column());
        if (key == ColumnKeys::position)
            return index.row() + 1;
        if (key == ColumnKeys::name)
            return m_operations.at(index.row()).name;
    }
    return ClearbackgroundTableModel::data(index, role);
}

Qt::ItemFlags ServiceOperationsModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = ClearbackgroundTableModel::flags(index);
    const bool isName = index.isValid() && columnKey(index.column()) == ColumnKeys::name;
    return isName ? flags | Qt::ItemIsEditable : flags;
}

bool ServiceOperationsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !isCell(index) || columnKey(index.column()) != ColumnKeys::name)
        return ClearbackgroundTableModel::setData(index, value, role);

    ServiceOperation &operation = m_operations[index.row()];
    operation.name = value.toString();
    const ServiceOperation changed = operation; // receivers may change the rows
    emit operationNameChanged(changed.id, changed.name);
    return true;
}

QModelIndex ServiceOperationsModel::addEmptyOperation()
{
    {
        const LayoutChange change(*this);
        m_operations.append(ServiceOperation());
    }
    return index(m_operations.size() - 1, 1);
}

void ServiceOperationsModel::appendOperation(int id, const QString &name)
{
    m_operations.append({id, name});
}

void ServiceOperationsModel::setNewOperationId(int id)
{
    const int row = rowOf(noId);
    if (row >= 0)
        m_operations[row].id = id;
}

void ServiceOperationsModel::removeOperation(int id)
{
    const int row = rowOf(id);
    if (row < 0)
        return;
    const LayoutChange change(*this);
    m_operations.removeAt(row);
}

QString ServiceOperationsModel::recordId(int row) const
{
    return QString::number(m_operations.at(row).id);
}

int ServiceOperationsModel::rowOf(int id) const
{
    const auto it = std::find_if(m_operations.cbegin(), m_operations.cend(),
                                 [id](const ServiceOperation &operation) { return operation.id == id; });
    return it == m_operations.cend() ? -1 : int(std::distance(m_operations.cbegin(), it));
}
