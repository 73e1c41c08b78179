#pragma once

#include <QSortFilterProxyModel>

class ServiceLogModel;

/// Narrows the service log to a car model, a fragment of the car's number, and an operation; numbers the
/// rows that are left.
class ServiceLogFilter final : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    /// Values of the operation filter beside operation ids.
    static constexpr int anyOperation = -2;
    static constexpr int pendingOnly = -3;

    explicit ServiceLogFilter(QObject *parent = nullptr);

    void setSourceModel(QAbstractItemModel *sourceModel) override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /// Empty: any model.
    void setModelFilter(const QString &model);
    /// Empty: any number.
    void setNumberFilter(const QString &fragment);
    /// An operation id, anyOperation or pendingOnly.
    void setOperationFilter(int operation);
    /// Everything passes.
    void reset();

    QString modelFilter() const { return m_modelFilter; }
    QString numberFilter() const { return m_numberFilter; }
    int operationFilter() const { return m_operationFilter; }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    bool acceptsOperation(int opId, int state) const;

    QString m_modelFilter;
    QString m_numberFilter;
    int m_operationFilter = anyOperation;
    const ServiceLogModel *m_log = nullptr;
};
