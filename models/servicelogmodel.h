#pragma once

#include "data/records.h"
#include "models/clearbackgroundtablemodel.h"

#include <QList>

/// The service log, newest record first as the loader delivers it. Shows at most the first thousand records.
class ServiceLogModel final : public ClearbackgroundTableModel
{
    Q_OBJECT
public:
    using ServiceLogItem = ::ServiceLogItem;

    static constexpr int maximumRowCount = 1000;

    explicit ServiceLogModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /// A refill is clear, append and refresh within one LayoutChange; clear and append emit no signals.
    void clear();
    void append(const QList<ServiceLogItem> &items);
    /// Announces a layout change of its own; within a LayoutChange that is left to its end.
    void refresh();
    /// Removes a record, also one beyond those shown; does nothing if out of range.
    void removeItem(int row);

    /// The record of an existing row.
    const ServiceLogItem &itemAt(int row) const { return m_items.at(row); }
    /// The row of a record by its local id, or -1.
    int rowOf(int id) const;

protected:
    QString recordId(int row) const override;

private:
    const QBrush m_pendingBrush;
    QList<ServiceLogItem> m_items;
};
