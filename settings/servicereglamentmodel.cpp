#include "settings/servicereglamentmodel.h"

#include "data/columnkeys.h"

#include <algorithm>

namespace {

constexpr int fixedColumnCount = 2;
constexpr int operationColumnWidth = 120;

} // namespace

ServiceReglamentModel::ServiceReglamentModel()
{
    appendColumn({tr("#"), Qt::AlignRight, 50, ColumnKeys::position, Qt::AlignCenter});
    appendColumn({tr("Модель"), Qt::AlignLeft, 80, ColumnKeys::model, Qt::AlignCenter});
}

int ServiceReglamentModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_entries.size());
}

QVariant ServiceReglamentModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole || !isCell(index))
        return ClearbackgroundTableModel::data(index, role);

    const QString key = columnKey(index.column());
    const ModelReglament &entry = m_entries.at(index.row());
    if (key == ColumnKeys::position)
        return index.row() + 1;
    if (key == ColumnKeys::model)
        return entry.model;

    const int opId = ColumnKeys::operationId(key);
    const Limits limits = opId == noId ? Limits() : entry.limits.value(opId).limits;
    if (!limits.hasAny())
        return QString();
    return QString::asprintf(qUtf8Printable(tr("%.1f ч. %d заезд. %d кр.")), limits.seconds / secondsPerHour,
                             limits.runs, limits.laps);
}

void ServiceReglamentModel::clear()
{
    truncateColumns(fixedColumnCount);
    m_entries.clear();
}

void ServiceReglamentModel::addModel(const QString &name)
{
    m_entries.append({name, {}});
}

void ServiceReglamentModel::addOperation(int opId, const QString &name)
{
    appendColumn({name, Qt::AlignCenter, operationColumnWidth, ColumnKeys::operation(opId), Qt::AlignCenter});
    for (ModelReglament &entry : m_entries) {
        if (!entry.limits.contains(opId))
            entry.limits.insert(opId, {opId, name, {}});
    }
}

void ServiceReglamentModel::setLimits(const QString &model, int opId, const Limits &limits)
{
    const auto find = [this](auto isModel) {
        return std::find_if(m_entries.begin(), m_entries.end(), isModel);
    };
    auto entry = find([&model](const ModelReglament &candidate) {
        return candidate.model == model && candidate.model.isNull() == model.isNull();
    });
    if (entry == m_entries.end())
        entry = find([&model](const ModelReglament &candidate) { return candidate.model == model; });
    if (entry != m_entries.end())
        setLimits(*entry, opId, limits);
}

void ServiceReglamentModel::setLimits(const QModelIndex &cell, int opId, const Limits &limits)
{
    if (!isCell(cell) || !setLimits(m_entries[cell.row()], opId, limits))
        return;
    emit dataChanged(cell, cell);
}

bool ServiceReglamentModel::setLimits(ModelReglament &entry, int opId, const Limits &limits)
{
    const auto record = entry.limits.find(opId);
    if (record == entry.limits.end())
        return false;
    record->limits = limits;
    return true;
}

bool ServiceReglamentModel::isOperationColumn(int column) const
{
    return ColumnKeys::isOperation(columnKey(column));
}

const ReglamentLimit *ServiceReglamentModel::limitAt(int row, int column) const
{
    const int place = column - fixedColumnCount;
    if (row < 0 || row >= m_entries.size())
        return nullptr;
    const QMap<int, ReglamentLimit> &limits = m_entries.at(row).limits;
    return place >= 0 && place < limits.size() ? &*std::next(limits.cbegin(), place) : nullptr;
}

QString ServiceReglamentModel::recordId(int row) const
{
    return m_entries.at(row).model;
}
