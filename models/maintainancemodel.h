#pragma once

#include "data/records.h"
#include "data/reglamentsource.h"
#include "models/clearbackgroundtablemodel.h"

#include <QAbstractProxyModel>
#include <QByteArray>
#include <QList>
#include <QPointer>

#include <optional>

class QTreeView;

/// The maintenance table: one row per car, one column per service operation. Sorts itself.
class MaintainanceModel final : public ClearbackgroundTableModel
{
    Q_OBJECT
public:
    using MaintainanceItem = ::MaintainanceItem;
    using OperationStat = ::OperationStat;

    /// What an operation column is sorted by.
    enum SortMode { SortByLastDone, SortByTotalTime, SortByRuns, SortByLaps };

    /// What the table is sorted by at first.
    static constexpr int numberColumn = 2;

    explicit MaintainanceModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// The flags of the base and what the cell offers (CellFlags).
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// The first request sorts by number, whatever the column; kept on purpose, because the view's own first
    /// request would otherwise change the initial order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    /// The proxy whose rows the position column counts; not owned, may be null.
    void setRowNumberProxy(const QAbstractProxyModel *proxy);
    /// Replaces the operation columns by those of the reglament's first entry; does nothing without one.
    /// Emits no signals: call it within a LayoutChange.
    void updateColumns(const ReglamentSource *reglament, QTreeView *view);
    void setItems(const QList<MaintainanceItem> &items);
    /// One of SortMode; any other value sorts by model and number.
    void setSortMode(int mode);

    /// The record of an existing row.
    const MaintainanceItem &itemAt(int row) const { return m_items.at(row); }
    /// The first item of that car, to be changed in place, or null. Valid until the items change.
    MaintainanceItem *itemById(int carId);
    /// The id of an operation's column; none for any other column.
    std::optional<int> operationOfColumn(int column) const;
    /// The operation whose date and counters a cell shows; null for any other cell and for an empty one.
    /// Valid until the items change.
    const OperationStat *shownOperation(const QModelIndex &index) const;
    /// For the immediate feedback: moves the last date of an operation forward on every item of the car, if
    /// that date is later than what the first one has; counters stay, and a new entry is a done one. Emits
    /// dataChanged for `clicked` alone, the cell that the user clicked, in every case; for none if it is
    /// invalid.
    void recordServiceDone(int carId, int opId, const QDateTime &doneAt, const QModelIndex &clicked);

protected:
    QString recordId(int row) const override;

private:
    enum class ColumnKind { Position, Model, Number, Operation, Unknown };
    struct ColumnMeaning
    {
        ColumnKind kind = ColumnKind::Unknown;
        int opId = noId;
    };

    void readColumnKeys();
    bool isCarColumn(int column) const;
    QVariant displayData(const QModelIndex &index) const;
    int shownRowNumber(const QModelIndex &index) const;
    QString operationText(const OperationStat &stat) const;
    void moveLastDone(int carId, int opId, const QDateTime &doneAt);
    void resort();

    QPointer<const QAbstractProxyModel> m_rowNumberProxy;
    const QBrush m_attentionBrush;
    const QByteArray m_statisticsFormat; ///< UTF-8, of QString::asprintf
    QList<MaintainanceItem> m_items;
    QVector<ColumnMeaning> m_columnMeanings; ///< the column keys, parsed
    int m_sortMode = SortByLastDone;
    int m_sortColumn = -1; ///< -1: never sorted
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
