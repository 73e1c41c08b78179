#pragma once

#include "data/reglamentsource.h"
#include "models/clearbackgroundtablemodel.h"

/// The maintenance schedule as it is edited: one row per car model, one column per service operation.
/// Read-only for views. What fills it emits no signals: call it within a LayoutChange.
class ServiceReglamentModel final : public ClearbackgroundTableModel, public ReglamentSource
{
    Q_OBJECT
public:
    ServiceReglamentModel();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    const QList<ModelReglament> &entries() const override { return m_entries; }

    /// Back to the fixed columns and no rows.
    void clear();
    /// Appends a car model without any limits record.
    void addModel(const QString &name);
    /// Appends the operation's column, and a record without limits to every row that has none of it.
    void addOperation(int opId, const QString &name);
    /// Changes a record that is there; nothing happens for an unknown model or operation. Of two models
    /// without a name, NULL and an empty text in the file, the one that is meant is preferred.
    void setLimits(const QString &model, int opId, const Limits &limits);

    /// Changes the operation's record in the row of the cell and emits dataChanged for the cell; nothing
    /// happens if there is no such record.
    void setLimits(const QModelIndex &cell, int opId, const Limits &limits);

    /// True for a column of one of the operations.
    bool isOperationColumn(int column) const;
    /// The record of a row whose place in ascending id order is the column's among the operation columns;
    /// null if there is none. Valid until the rows change.
    const ReglamentLimit *limitAt(int row, int column) const;

protected:
    QString recordId(int row) const override;

private:
    /// False if the entry has no record of that operation.
    static bool setLimits(ModelReglament &entry, int opId, const Limits &limits);

    QList<ModelReglament> m_entries;
};
