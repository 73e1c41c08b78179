#include "models/clearbackgroundtablemodel.h"

#include <QHash>
#include <QTreeView>

namespace {

using Identity = QPair<QString, int>;

const Identity noIdentity {{}, -1};

template<typename IdOf> QVector<Identity> identities(int count, IdOf idOf)
{
    QVector<Identity> result;
    result.reserve(count);
    QHash<QString, int> seen;
    for (int place = 0; place < count; ++place) {
        const QString id = idOf(place);
        result.append({id, seen[id]++});
    }
    return result;
}

QHash<Identity, int> places(const QVector<Identity> &identities)
{
    QHash<Identity, int> result;
    result.reserve(identities.size());
    for (int place = 0; place < identities.size(); ++place)
        result.insert(identities.at(place), place);
    return result;
}

} // namespace

ClearbackgroundTableModel::ClearbackgroundTableModel(QObject *parent)
    : QAbstractTableModel(parent), m_background(Qt::transparent)
{
}

int ClearbackgroundTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
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

    const QVector<Identity> rowIds = rowIdentities();
    const QVector<Identity> columnIds = columnIdentities();
    m_tracked.reserve(indexes.size());
    for (const QModelIndex &index : indexes) {
        // A persistent index of rows that were removed without a signal has no record to follow.
        const bool isTracked = isCell(index);
        m_tracked.append({index, isTracked ? rowIds.at(index.row()) : noIdentity,
                          isTracked ? columnIds.at(index.column()) : noIdentity});
    }
}

void ClearbackgroundTableModel::movePersistentIndexes()
{
    if (m_tracked.isEmpty())
        return;

    const QHash<Identity, int> rowPlaces = places(rowIdentities());
    const QHash<Identity, int> columnPlaces = places(columnIdentities());
    QModelIndexList from;
    QModelIndexList to;
    from.reserve(m_tracked.size());
    to.reserve(m_tracked.size());
    for (const TrackedIndex &tracked : qAsConst(m_tracked)) {
        from.append(tracked.index);
        to.append(index(rowPlaces.value(tracked.row, -1), columnPlaces.value(tracked.column, -1)));
    }
    m_tracked.clear();
    changePersistentIndexList(from, to);
}

QVector<ClearbackgroundTableModel::Identity> ClearbackgroundTableModel::rowIdentities() const
{
    return identities(rowCount(), [this](int row) { return recordId(row); });
}

QVector<ClearbackgroundTableModel::Identity> ClearbackgroundTableModel::columnIdentities() const
{
    return identities(columnCount(), [this](int column) { return columnKey(column); });
}
