#include "models/maintainancemodel.h"

#include "data/columnkeys.h"
#include "data/datetimetext.h"
#include "data/numbertext.h"
#include "models/cellcolors.h"
#include "models/cellflags.h"

#include <QAbstractProxyModel>
#include <QTreeView>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

constexpr int fixedColumnCount = 3;
constexpr int numberColumn = 2;
constexpr int operationColumnWidth = 160;

/// What a row is sorted by; the number is worked out once, not in each comparison.
struct SortEntry
{
    MaintainanceItem item;
    int number = -1;
    std::optional<qint64> value; ///< nothing: the car lacks the operation, or rows are in base order
};

std::optional<qint64> sortValue(const MaintainanceItem &item, int opId, int sortMode)
{
    const auto stat = item.ops.constFind(opId);
    if (stat == item.ops.cend())
        return std::nullopt;
    switch (sortMode) {
    case MaintainanceModel::SortByLastDone:
        return stat->lastDone.isValid() ? std::make_optional(stat->lastDone.toSecsSinceEpoch())
                                        : std::nullopt;
    case MaintainanceModel::SortByTotalTime:
        return stat->totalTime;
    case MaintainanceModel::SortByRuns:
        return stat->runs;
    case MaintainanceModel::SortByLaps:
        return stat->laps;
    default:
        return std::nullopt;
    }
}

bool isBefore(const SortEntry &a, const SortEntry &b, bool ascending)
{
    // Cars that have the operation come first in either direction.
    if (a.value.has_value() != b.value.has_value())
        return a.value.has_value();
    const auto inOrder = [ascending](const auto &x, const auto &y) { return ascending ? x < y : y < x; };
    if (a.value)
        return inOrder(*a.value, *b.value);
    return a.item.model == b.item.model ? inOrder(a.number, b.number) : inOrder(a.item.model, b.item.model);
}

} // namespace

MaintainanceModel::MaintainanceModel(QObject *parent)
    : ClearbackgroundTableModel(parent), m_attentionBrush(CellColors::attention)
{
    constexpr int right = Qt::AlignRight | Qt::AlignVCenter;
    constexpr int left = Qt::AlignLeft | Qt::AlignVCenter;
    appendColumn({tr("#"), right, 40, ColumnKeys::position, Qt::AlignCenter});
    appendColumn({tr("Модель"), left, 80, ColumnKeys::model, Qt::AlignCenter});
    appendColumn({tr("Номер"), right, 60, ColumnKeys::number, Qt::AlignCenter});
}

int MaintainanceModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_items.size();
}

QVariant MaintainanceModel::data(const QModelIndex &index, int role) const
{
    if (isCell(index)) {
        if (role == Qt::DisplayRole)
            return displayText(index);
        if (role == Qt::BackgroundRole && offersAttention(index.column())
            && m_items.at(index.row()).hasOpenOperation())
            return m_attentionBrush;
    }
    return ClearbackgroundTableModel::data(index, role);
}

QVariant MaintainanceModel::displayText(const QModelIndex &index) const
{
    const MaintainanceItem &item = m_items.at(index.row());
    const QString key = columnKey(index.column());
    if (key == ColumnKeys::position)
        return (m_rowNumberProxy ? m_rowNumberProxy->mapFromSource(index).row() : index.row()) + 1;
    if (key == ColumnKeys::number)
        return item.num;
    if (key == ColumnKeys::model)
        return item.model;

    const int opId = ColumnKeys::operationId(key);
    const auto stat = item.ops.constFind(opId);
    if (opId == noId || stat == item.ops.cend())
        return QString();
    return operationText(*stat);
}

QString MaintainanceModel::operationText(const OperationStat &stat)
{
    if (!stat.lastDone.isValid())
        return {};
    const QString date = DateTimeText::forDisplay(stat.lastDone);
    if (stat.laps == 0 && stat.runs == 0 && stat.totalTime == 0)
        return date;
    return date + QLatin1Char('\n')
        + QString::asprintf(qUtf8Printable(tr("%.1f ч., %d з., %d кр.")), stat.totalTime / 3600.0, stat.runs,
                            stat.laps);
}

bool MaintainanceModel::offersAttention(int column) const
{
    const QString key = columnKey(column);
    return key == ColumnKeys::number || key == ColumnKeys::model;
}

Qt::ItemFlags MaintainanceModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = ClearbackgroundTableModel::flags(index);
    if (!isCell(index))
        return flags;
    return flags | QFlag(offersAttention(index.column()) ? CellFlags::attention : CellFlags::service);
}

void MaintainanceModel::sort(int column, Qt::SortOrder order)
{
    const LayoutChange change(*this);
    if (m_sortColumn == -1) {
        m_sortColumn = numberColumn;
    } else {
        m_sortColumn = column;
        m_sortOrder = order;
    }
    resort();
}

void MaintainanceModel::setSortMode(int mode)
{
    const LayoutChange change(*this);
    m_sortMode = mode;
    resort();
}

void MaintainanceModel::resort()
{
    if (m_sortColumn < 0 || m_sortColumn >= columnCount())
        return;
    const bool byOperation = m_sortColumn >= fixedColumnCount;
    const int opId = ColumnKeys::operationId(columnKey(m_sortColumn));

    std::vector<SortEntry> entries;
    entries.reserve(size_t(m_items.size()));
    for (const MaintainanceItem &item : qAsConst(m_items)) {
        entries.push_back({item, leadingInteger(item.num).value_or(-1),
                           byOperation ? sortValue(item, opId, m_sortMode) : std::nullopt});
    }
    const bool ascending = m_sortOrder == Qt::AscendingOrder;
    std::sort(entries.begin(), entries.end(),
              [ascending](const SortEntry &a, const SortEntry &b) { return isBefore(a, b, ascending); });

    m_items.clear();
    for (SortEntry &entry : entries)
        m_items.append(std::move(entry.item));
}

void MaintainanceModel::setRowNumberProxy(const QAbstractProxyModel *proxy)
{
    m_rowNumberProxy = proxy;
}

void MaintainanceModel::updateColumns(const ReglamentSource *reglament, QTreeView *view)
{
    if (!reglament || reglament->entries().isEmpty())
        return;
    const QMap<int, ReglamentLimit> operations = reglament->entries().first().limits;

    int column = fixedColumnCount;
    for (const ReglamentLimit &operation : operations) {
        const QString key = ColumnKeys::operation(operation.opId);
        if (column < columnCount()) {
            renameColumn(column, operation.opName, key);
        } else {
            appendColumn({operation.opName, Qt::AlignRight, operationColumnWidth, key, Qt::AlignCenter});
            if (view)
                view->setColumnWidth(column, operationColumnWidth);
        }
        ++column;
    }
    // What goes are the columns from the number of operations on, fixed ones among them.
    while (operations.size() < columnCount() - fixedColumnCount)
        removeColumnAt(operations.size());
}

void MaintainanceModel::setItems(const QList<MaintainanceItem> &items)
{
    const LayoutChange change(*this);
    if (!m_items.isSharedWith(items))
        m_items = items;
    resort();
}

MaintainanceItem *MaintainanceModel::itemById(int carId)
{
    const auto it = std::find_if(m_items.begin(), m_items.end(),
                                 [carId](const MaintainanceItem &item) { return item.carId == carId; });
    return it == m_items.end() ? nullptr : &*it;
}

void MaintainanceModel::recordServiceDone(int carId, int opId, const QDateTime &doneAt)
{
    const MaintainanceItem *first = itemById(carId);
    if (!first)
        return;
    const QDateTime lastDone = first->operation(opId).lastDone;
    if (lastDone.isValid() && lastDone >= doneAt)
        return;

    for (MaintainanceItem &item : m_items) {
        if (item.carId != carId)
            continue;
        const bool isNew = !item.ops.contains(opId);
        OperationStat &stat = item.ops[opId];
        if (isNew) {
            stat.opId = opId;
            stat.state = DoneState;
        }
        stat.lastDone = doneAt;
    }
}

QString MaintainanceModel::recordId(int row) const
{
    return QString::number(m_items.at(row).carId);
}
