#pragma once

#include "data/scheduletables.h"
#include "models/clearbackgroundtablemodel.h"

/// The list of service operations; their names can be edited in place. A row that is not stored yet has the
/// id -1.
class ServiceOperationsModel final : public ClearbackgroundTableModel
{
    Q_OBJECT
public:
    ServiceOperationsModel();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// Takes a new name and tells of it; dataChanged is not emitted.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    const QVector<ServiceOperation> &operations() const { return m_operations; }

    /// Appends a row that is not stored yet and gives its name cell.
    QModelIndex addEmptyOperation();
    /// Appends a stored operation while loading; says nothing to views.
    void appendOperation(int id, const QString &name);
    /// Gives the first row that is not stored yet the id that the database chose.
    void setNewOperationId(int id);
    /// Removes the first row with that id.
    void removeOperation(int id);

signals:
    /// `opId` -1: a row that is not stored yet.
    void operationNameChanged(int opId, QString newName);

protected:
    QString recordId(int row) const override;

private:
    int rowOf(int id) const;

    QVector<ServiceOperation> m_operations;
};
