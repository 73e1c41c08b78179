#include "models/clearbackgroundtablemodel.h"

#include <QHash>
#include <QTreeView>

namespace {

/// For each of `count` rows or columns, how many before it have the same id.
template<typename IdOf> QVector<int> occurrences(int count, IdOf idOf)
{
    QVector<int> result(count);
    QHash<QString, int> seen;
    for (int place = 0; place < count; ++place)
        result[place] = seen[idOf(place)]++;
    return result;
}

template<typename IdOf> QHash<QString, QVector<int>> placesById(int count, IdOf idOf)
{
    QHash<QString, QVector<int>> places;
    for (int place = 0; place < count; ++place)
        places[idOf(place)].append(place);
    return places;
}

} // namespace

ClearbackgroundTableModel::ClearbackgroundTableModel(QObject *parent)
    : QAbstractTableModel(parent), m_background(Qt::transparent)
{
}

int ClearbackgroundTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns.size();
}

QVariant ClearbackgroundTableModel::data(const QModelIndex &index, int role) const
{
    switch (role) {
    case Qt::TextAlignmentRole:
        if (!index.isValid() || index.column() >= m_columns.size())
            return {};
        return m_columns.at(index.column()).alignment;
    case Qt::BackgroundRole:
        return m_background;
    default:
        return {};
    }
}

QVariant ClearbackgroundTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size())
        return {};
    const Column &column = m_columns.at(section);
    switch (role) {
    case Qt::DisplayRole:
        return column.title;
    case Qt::TextAlignmentRole:
        return column.headerAlignment == -1 ? column.alignment : column.headerAlignment;
    default:
        return {};
    }
}

QString ClearbackgroundTableModel::columnKey(int column) const
{
    return column >= 0 && column < m_columns.size() ? m_columns.at(column).key : QString();
}

void ClearbackgroundTableModel::applyColumnWidths(QTreeView *view) const
{
    for (int column = 0; column < m_columns.size(); ++column)
        view->setColumnWidth(column, m_columns.at(column).width);
}

bool ClearbackgroundTableModel::isCell(const QModelIndex &index) const
{
    return index.isValid() && index.model() == this && index.row() < rowCount()
        && index.column() < m_columns.size();
}

void ClearbackgroundTableModel::appendColumn(const Column &column)
{
    m_columns.append(column);
}

void ClearbackgroundTableModel::renameColumn(int column, const QString &title, const QString &key)
{
    m_columns[column].title = title;
    m_columns[column].key = key;
}

void ClearbackgroundTableModel::removeColumnAt(int column)
{
    m_columns.removeAt(column);
}

void ClearbackgroundTableModel::truncateColumns(int count)
{
    while (m_columns.size() > count)
        m_columns.removeLast();
}

void ClearbackgroundTableModel::beginLayoutChange()
{
    if (m_layoutChangeDepth++ > 0)
        return;
    emit layoutAboutToBeChanged();
    trackPersistentIndexes();
}

void ClearbackgroundTableModel::endLayoutChange()
{
    if (--m_layoutChangeDepth > 0)
        return;
    movePersistentIndexes();
    emit layoutChanged();
}

void ClearbackgroundTableModel::trackPersistentIndexes()
{
    const QModelIndexList indexes = persistentIndexList();
    if (indexes.isEmpty())
        return;

    const auto rowId = [this](int row) { return recordId(row); };
    const auto columnId = [this](int column) { return columnKey(column); };
    const QVector<int> rowOccurrences = occurrences(rowCount(), rowId);
    const QVector<int> columnOccurrences = occurrences(columnCount(), columnId);
    m_tracked.reserve(indexes.size());
    for (const QModelIndex &index : indexes) {
        // An index left over from rows that went without announcement has no record to follow.
        TrackedIndex tracked {index, {}, -1, {}, -1};
        if (isCell(index)) {
            tracked = {index, recordId(index.row()), rowOccurrences.at(index.row()),
                       columnKey(index.column()), columnOccurrences.at(index.column())};
        }
        m_tracked.append(tracked);
    }
}

void ClearbackgroundTableModel::movePersistentIndexes()
{
    if (m_tracked.isEmpty())
        return;

    const auto rowsByRecord = placesById(rowCount(), [this](int row) { return recordId(row); });
    const auto columnsByKey = placesById(columnCount(), [this](int column) { return columnKey(column); });

    QModelIndexList from;
    QModelIndexList to;
    for (const TrackedIndex &tracked : qAsConst(m_tracked)) {
        const int row = rowsByRecord.value(tracked.recordId).value(tracked.rowOccurrence, -1);
        const int column = columnsByKey.value(tracked.columnKey).value(tracked.columnOccurrence, -1);
        from.append(tracked.index);
        to.append(index(row, column));
    }
    m_tracked.clear();
    changePersistentIndexList(from, to);
}
