#include "models/servicelogmodel.h"

#include "data/columnkeys.h"
#include "data/datetimetext.h"
#include "models/cellcolors.h"

#include <algorithm>

ServiceLogModel::ServiceLogModel(QObject *parent)
    : ClearbackgroundTableModel(parent), m_pendingBrush(CellColors::attention)
{
    appendColumn({tr("#"), Qt::AlignRight, 60, ColumnKeys::position, Qt::AlignCenter});
    appendColumn({tr("Модель"), Qt::AlignRight, 80, ColumnKeys::model, Qt::AlignCenter});
    appendColumn({tr("Номер"), Qt::AlignRight, 60, ColumnKeys::number, Qt::AlignCenter});
    appendColumn({tr("Время"), Qt::AlignRight, 120, ColumnKeys::time, Qt::AlignCenter});
    appendColumn({tr("Операция"), Qt::AlignLeft, 120, ColumnKeys::operationName, Qt::AlignCenter});
    appendColumn({tr("Исполнитель"), Qt::AlignLeft, 240, ColumnKeys::personName, Qt::AlignCenter});
    appendColumn({tr("Комментарий"), Qt::AlignLeft, 240, ColumnKeys::comment, Qt::AlignCenter});
}

int ServiceLogModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : std::min(int(m_items.size()), maximumRowCount);
}

QVariant ServiceLogModel::data(const QModelIndex &index, int role) const
{
    if (!isCell(index))
        return ClearbackgroundTableModel::data(index, role);

    const ServiceLogItem &item = m_items.at(index.row());
    if (role == Qt::BackgroundRole && item.state == OpenState)
        return m_pendingBrush;
    if (role == Qt::DisplayRole) {
        const QString key = columnKey(index.column());
        if (key == ColumnKeys::position)
            return index.row() + 1;
        if (key == ColumnKeys::model)
            return item.model;
        if (key == ColumnKeys::number)
            return item.num;
        if (key == ColumnKeys::time)
            return DateTimeText::forDisplay(item.opTime.toLocalTime());
        if (key == ColumnKeys::operationName)
            return item.opName;
        if (key == ColumnKeys::personName)
            return item.personName;
        if (key == ColumnKeys::comment)
            return item.comment;
    }
    return ClearbackgroundTableModel::data(index, role);
}

void ServiceLogModel::clear()
{
    m_items.clear();
}

void ServiceLogModel::append(const QList<ServiceLogItem> &items)
{
    m_items.append(items);
}

void ServiceLogModel::refresh()
{
    const LayoutChange change(*this);
}

void ServiceLogModel::removeItem(int row)
{
    const LayoutChange change(*this);
    if (row >= 0 && row < m_items.size())
        m_items.removeAt(row);
}

int ServiceLogModel::rowOf(int id) const
{
    const auto found = std::find_if(m_items.cbegin(), m_items.cend(),
                                    [id](const ServiceLogItem &item) { return item.id == id; });
    return found == m_items.cend() ? -1 : int(std::distance(m_items.cbegin(), found));
}

QString ServiceLogModel::recordId(int row) const
{
    return QString::number(m_items.at(row).id);
}
