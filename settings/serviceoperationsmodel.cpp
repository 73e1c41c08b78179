#include "settings/serviceoperationsmodel.h"

#include "data/columnkeys.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int nameColumn = 1;

} // namespace

ServiceOperationsModel::ServiceOperationsModel()
{
    appendColumn({tr("#"), Qt::AlignRight, 60, ColumnKeys::position, Qt::AlignCenter});
    appendColumn({tr("Операция"), Qt::AlignLeft, 140, ColumnKeys::name, Qt::AlignCenter});
}

int ServiceOperationsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant ServiceOperationsModel::data(const QModelIndex &index, int role) const
{
    if (isCell(index) && (role == Qt::DisplayRole || role == Qt::EditRole)) {
        const QString key = columnKey(index.column());
        if (key == ColumnKeys::position)
            return index.row() + 1;
        if (key == ColumnKeys::name)
            return operationAt(index.row()).name;
    }
    return ClearbackgroundTableModel::data(index, role);
}

Qt::ItemFlags ServiceOperationsModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = ClearbackgroundTableModel::flags(index);
    const bool isName = isCell(index) && columnKey(index.column()) == ColumnKeys::name;
    return isName ? flags | Qt::ItemIsEditable : flags;
}

bool ServiceOperationsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const bool isName = isCell(index) && columnKey(index.column()) == ColumnKeys::name;
    if (role != Qt::EditRole || !isName)
        return ClearbackgroundTableModel::setData(index, value, role);

    m_rows[index.row()].operation.name = value.toString();
    const Row renamed = m_rows.at(index.row());
    m_namedSerial = renamed.isStored ? std::nullopt : std::make_optional(renamed.serial);
    emit operationNameChanged(renamed.operation.id, renamed.operation.name);
    return true;
}

bool ServiceOperationsModel::hasStoredOperation() const
{
    return std::any_of(m_rows.cbegin(), m_rows.cend(), [](const Row &row) { return row.isStored; });
}

bool ServiceOperationsModel::isUnstored(int opId) const
{
    const auto isInFile = [](const Row &row) { return row.isStored && row.operation.id == noId; };
    return opId == noId && (m_namedSerial || std::none_of(m_rows.cbegin(), m_rows.cend(), isInFile));
}

void ServiceOperationsModel::setStoredOperations(const QVector<ServiceOperation> &operations)
{
    const LayoutChange change(*this);
    QVector<Row> previous;
    previous.swap(m_rows);
    for (const ServiceOperation &operation : operations)
        appendOperation(operation.id, operation.name);
    std::copy_if(previous.cbegin(), previous.cend(), std::back_inserter(m_rows),
                 [](const Row &row) { return !row.isStored; });
}

QModelIndex ServiceOperationsModel::addEmptyOperation()
{
    {
        const LayoutChange change(*this);
        m_rows.append({{noId, QString()}, false, m_nextSerial++});
    }
    return index(int(m_rows.size()) - 1, nameColumn);
}

void ServiceOperationsModel::appendOperation(int id, const QString &name)
{
    m_rows.append({{id, name}, true, m_nextSerial++});
}

void ServiceOperationsModel::setNewOperationId(int id)
{
    const int row = firstUnstored();
    if (row < 0)
        return;
    const auto named = std::find_if(m_rows.begin() + row, m_rows.end(), [this](const Row &candidate) {
        return !candidate.isStored && candidate.serial == m_namedSerial;
    });
    if (named != m_rows.end() && named != m_rows.begin() + row) {
        const LayoutChange change(*this);
        std::rotate(m_rows.begin() + row, named, named + 1);
    }
    m_rows[row].operation.id = id;
    m_rows[row].isStored = true;
}

void ServiceOperationsModel::removeOperation(int id)
{
    const int row = findOperation(id);
    if (row >= 0)
        removeOperationAt(row);
}

void ServiceOperationsModel::removeOperationAt(int row)
{
    const LayoutChange change(*this);
    m_rows.removeAt(row);
}

QString ServiceOperationsModel::recordId(int row) const
{
    const Row &record = m_rows.at(row);
    if (record.isStored)
        return QString::number(record.operation.id);
    return QLatin1String("new ") + QString::number(record.serial);
}

int ServiceOperationsModel::firstUnstored() const
{
    const auto it =
        std::find_if(m_rows.cbegin(), m_rows.cend(), [](const Row &row) { return !row.isStored; });
    return it == m_rows.cend() ? -1 : int(std::distance(m_rows.cbegin(), it));
}

int ServiceOperationsModel::findOperation(int id) const
{
    const auto it =
        std::find_if(m_rows.cbegin(), m_rows.cend(), [id](const Row &row) { return row.operation.id == id; });
    return it == m_rows.cend() ? -1 : int(std::distance(m_rows.cbegin(), it));
}
