#pragma once

#include "data/reglamentsource.h"
#include "data/scheduletables.h"
#include "models/clearbackgroundtablemodel.h"

/// The maintenance schedule as it is edited: one row per car model, one column per service operation.
/// Read-only for views. Rows and columns are replaced within a LayoutChange.
class ServiceReglamentModel final : public ClearbackgroundTableModel, public ReglamentSource
{
    Q_OBJECT
public:
    ServiceReglamentModel();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    const QList<ModelReglament> &entries() const override { return m_entries; }

    /// Back to the fixed columns and no rows; says nothing to views.
    void clear();
    /// A row with no limits; says nothing to views.
    void addModel(const QString &name);
    /// Appends the operation's column and gives every row that lacks it a record without limits; says
    /// nothing to views.
    void addOperation(int opId, const QString &name);
    /// Changes a record that is there; for an unknown model or operation nothing happens.
    void setLimits(const QString &model, int opId, int timeLimit, int runsLimit, int lapsLimit);

    /// The operation that the row holds at a place in ascending id order, or nothing.
    // used by the page: operations are found by position there, not by column key
    const ReglamentLimit *limitAt(int row, int position) const;

protected:
    QString recordId(int row) const override;

private:
    QList<ModelReglament> m_entries;
};
