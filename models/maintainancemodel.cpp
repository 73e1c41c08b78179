#include "models/maintainancemodel.h"

#include "data/columnkeys.h"
#include "data/datetimetext.h"
#include "models/cellcolors.h"
#include "models/cellflags.h"
#include "models/maintainanceorder.h"

#include <QTreeView>

#include <algorithm>
#include <vector>

namespace {

constexpr int fixedColumnCount = 3;
constexpr int operationColumnWidth = 160;
constexpr int textAlignment = Qt::AlignLeft | Qt::AlignVCenter;
constexpr int numberAlignment = Qt::AlignRight | Qt::AlignVCenter;

} // namespace

MaintainanceModel::MaintainanceModel(QObject *parent)
    : ClearbackgroundTableModel(parent)
    , m_attentionBrush(CellColors::attention)
    ,
    //: hours of driving, runs, laps
    m_statisticsFormat(tr("%.1f ч., %d з., %d кр.").toUtf8())
{
    appendColumn({tr("#"), numberAlignment, 40, ColumnKeys::position, Qt::AlignCenter});
    appendColumn({tr("Модель"), textAlignment, 80, ColumnKeys::model, Qt::AlignCenter});
    appendColumn({tr("Номер"), numberAlignment, 60, ColumnKeys::number, Qt::AlignCenter});
    readColumnKeys();
}

int MaintainanceModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_items.size());
}

QVariant MaintainanceModel::data(const QModelIndex &index, int role) const
{
    if (!isCell(index))
        return ClearbackgroundTableModel::data(index, role);
    if (role == Qt::DisplayRole)
        return displayData(index);
    if (role == Qt::BackgroundRole && isCarColumn(index.column())
        && m_items.at(index.row()).hasOpenOperation())
        return m_attentionBrush;
    return ClearbackgroundTableModel::data(index, role);
}

Qt::ItemFlags MaintainanceModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = ClearbackgroundTableModel::flags(index);
    if (!isCell(index))
        return flags;
    const int offer = isCarColumn(index.column()) ? CellFlags::attention : CellFlags::service;
    return Qt::ItemFlags(QFlag(int(flags) | offer));
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

void MaintainanceModel::setRowNumberProxy(const QAbstractProxyModel *proxy)
{
    m_rowNumberProxy = proxy;
}

void MaintainanceModel::updateColumns(const ReglamentSource *reglament, QTreeView *view)
{
    if (!reglament || reglament->entries().isEmpty())
        return;

    const QMap<int, ReglamentLimit> &operations = reglament->entries().constFirst().limits;
    QVector<int> newColumns;
    int column = fixedColumnCount;
    for (const ReglamentLimit &operation : operations) {
        const QString key = ColumnKeys::operation(operation.opId);
        if (column < columnCount()) {
            renameColumn(column, operation.opName, key);
        } else {
            appendColumn({operation.opName, Qt::AlignRight, operationColumnWidth, key, Qt::AlignCenter});
            newColumns.append(column);
        }
        ++column;
    }
    // Not the columns at the end; kept on purpose, because it is the established behaviour.
    while (operations.size() < columnCount() - fixedColumnCount)
        removeColumnAt(int(operations.size()));
    readColumnKeys();

    if (view) {
        for (int newColumn : qAsConst(newColumns))
            view->setColumnWidth(newColumn, operationColumnWidth);
    }
}

void MaintainanceModel::setItems(const QList<MaintainanceItem> &items)
{
    const LayoutChange change(*this);
    m_items = items;
    resort();
}

void MaintainanceModel::setSortMode(int mode)
{
    const LayoutChange change(*this);
    m_sortMode = mode;
    resort();
}

MaintainanceModel::MaintainanceItem *MaintainanceModel::itemById(int carId)
{
    const auto it = std::find_if(m_items.begin(), m_items.end(),
                                 [carId](const MaintainanceItem &item) { return item.carId == carId; });
    return it == m_items.end() ? nullptr : &*it;
}

std::optional<int> MaintainanceModel::operationOfColumn(int column) const
{
    const ColumnMeaning meaning = m_columnMeanings.value(column);
    return meaning.kind == ColumnKind::Operation ? std::optional<int>(meaning.opId) : std::nullopt;
}

const MaintainanceModel::OperationStat *MaintainanceModel::shownOperation(const QModelIndex &index) const
{
    if (!isCell(index))
        return nullptr;
    const std::optional<int> opId = operationOfColumn(index.column());
    if (!opId)
        return nullptr;
    const QMap<int, OperationStat> &ops = m_items.at(index.row()).ops;
    const auto stat = ops.constFind(*opId);
    return stat != ops.cend() && stat->lastDone.isValid() ? &*stat : nullptr;
}

void MaintainanceModel::recordServiceDone(int carId, int opId, const QDateTime &doneAt,
                                          const QModelIndex &clicked)
{
    moveLastDone(carId, opId, doneAt);
    if (isCell(clicked))
        emit dataChanged(clicked, clicked);
}

void MaintainanceModel::moveLastDone(int carId, int opId, const QDateTime &doneAt)
{
    const MaintainanceItem *first = itemById(carId);
    if (!first || !doneAt.isValid())
        return;
    const RecordTime lastDone = first->operation(opId).lastDone;
    if (lastDone.isValid() && lastDone >= doneAt)
        return;

    for (MaintainanceItem &item : m_items) {
        if (item.carId != carId)
            continue;
        if (!item.ops.contains(opId)) {
            OperationStat done;
            done.opId = opId;
            done.state = DoneState;
            item.ops.insert(opId, done);
        }
        item.ops[opId].lastDone = doneAt;
    }
}

QString MaintainanceModel::recordId(int row) const
{
    return QString::number(m_items.at(row).carId);
}

void MaintainanceModel::readColumnKeys()
{
    m_columnMeanings.clear();
    for (const Column &column : columns()) {
        if (column.key == ColumnKeys::position)
            m_columnMeanings.append({ColumnKind::Position, noId});
        else if (column.key == ColumnKeys::model)
            m_columnMeanings.append({ColumnKind::Model, noId});
        else if (column.key == ColumnKeys::number)
            m_columnMeanings.append({ColumnKind::Number, noId});
        else if (const int opId = ColumnKeys::operationId(column.key); opId != noId)
            m_columnMeanings.append({ColumnKind::Operation, opId});
        else
            m_columnMeanings.append(ColumnMeaning());
    }
}

bool MaintainanceModel::isCarColumn(int column) const
{
    const ColumnKind kind = m_columnMeanings.at(column).kind;
    return kind == ColumnKind::Model || kind == ColumnKind::Number;
}

QVariant MaintainanceModel::displayData(const QModelIndex &index) const
{
    const MaintainanceItem &item = m_items.at(index.row());
    switch (m_columnMeanings.at(index.column()).kind) {
    case ColumnKind::Position:
        return shownRowNumber(index);
    case ColumnKind::Model:
        return item.model;
    case ColumnKind::Number:
        return item.num;
    case ColumnKind::Operation: {
        const OperationStat *stat = shownOperation(index);
        return stat ? operationText(*stat) : QString();
    }
    case ColumnKind::Unknown:
        break;
    }
    return QString();
}

int MaintainanceModel::shownRowNumber(const QModelIndex &index) const
{
    const bool isShownThroughProxy = m_rowNumberProxy && m_rowNumberProxy->sourceModel() == this;
    return (isShownThroughProxy ? m_rowNumberProxy->mapFromSource(index).row() : index.row()) + 1;
}

QString MaintainanceModel::operationText(const OperationStat &stat) const
{
    QString date = DateTimeText::forDisplay(stat.lastDone.toLocalTime());
    if (stat.laps == 0 && stat.runs == 0 && stat.totalTime == 0)
        return date;
    return date + QLatin1Char('\n')
        + QString::asprintf(m_statisticsFormat.constData(), stat.totalTime / secondsPerHour, stat.runs,
                            stat.laps);
}

void MaintainanceModel::resort()
{
    if (m_sortColumn < 0 || m_sortColumn >= columnCount())
        return;

    const std::optional<int> opId =
        m_sortColumn < fixedColumnCount ? std::nullopt : operationOfColumn(m_sortColumn);
    const MaintainanceOrder precedes(opId, m_sortMode, m_sortOrder);
    struct KeyedRow
    {
        MaintainanceOrder::Key key;
        int row;
    };
    std::vector<KeyedRow> order;
    order.reserve(std::size_t(m_items.size()));
    for (int row = 0; row < m_items.size(); ++row)
        order.push_back({precedes.key(m_items.at(row)), row});
    std::sort(order.begin(), order.end(),
              [&precedes](const KeyedRow &a, const KeyedRow &b) { return precedes(a.key, b.key); });

    QList<MaintainanceItem> sorted;
    sorted.reserve(m_items.size());
    for (const KeyedRow &keyed : order)
        sorted.append(m_items.at(keyed.row));
    m_items.swap(sorted);
}
