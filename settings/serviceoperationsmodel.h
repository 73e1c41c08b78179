#pragma once

#include "data/scheduletables.h"
#include "models/clearbackgroundtablemodel.h"

#include <QVector>

#include <optional>

/// The list of service operations, whose names are edited in place. A row that was added in the view is not
/// stored until setNewOperationId(); until then its id is noId. An operation in the file may also have that
/// id: it counts as stored.
class ServiceOperationsModel final : public ClearbackgroundTableModel
{
    Q_OBJECT
public:
    ServiceOperationsModel();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// Emits operationNameChanged() and no dataChanged().
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    /// The operation of an existing row.
    const ServiceOperation &operationAt(int row) const { return m_rows.at(row).operation; }

    /// Whether an existing row is in the file.
    bool isStored(int row) const { return m_rows.at(row).isStored; }
    bool hasStoredOperation() const;
    /// Whether the operationNameChanged() of this id is about a row that is not stored.
    bool isUnstored(int opId) const;
    /// Replaces all stored operations. Rows that are not stored yet remain, at the end.
    void setStoredOperations(const QVector<ServiceOperation> &operations);
    /// Appends a row without id and name; the index is that of its name.
    QModelIndex addEmptyOperation();
    /// Appends a stored operation; emits no signals.
    void appendOperation(int id, const QString &name);
    /// Sets the id of the first row that is not stored yet. If one of them was named last, it is moved in
    /// front of the others first.
    void setNewOperationId(int id);
    /// Removes the first row with that id; nothing happens if there is none.
    void removeOperation(int id);
    /// Removes an existing row.
    void removeOperationAt(int row);

signals:
    /// `opId` is noId for a row that is not stored.
    void operationNameChanged(int opId, QString newName);

protected:
    QString recordId(int row) const override;

private:
    struct Row
    {
        ServiceOperation operation;
        bool isStored = false;
        quint64 serial = 0; ///< rows that are not stored have no other identity
    };

    int findOperation(int id) const;
    /// The first row that is not stored, or -1.
    int firstUnstored() const;

    QVector<Row> m_rows;
    quint64 m_nextSerial = 0;
    std::optional<quint64> m_namedSerial; ///< of the row that was named last, if it was not stored
};
