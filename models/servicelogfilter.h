#pragma once

#include "models/tablefilterproxy.h"

/// Filters a ServiceLogModel by car model, by a part of the car number and by operation, and numbers the
/// remaining rows. GUI thread only.
class ServiceLogFilter final : public TableFilterProxy
{
    Q_OBJECT
public:
    /// Operation filters that name no operation.
    static constexpr int anyOperation = -2;
    static constexpr int pendingOnly = -3;

    explicit ServiceLogFilter(QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /// The whole model name, as it is written; empty: any model.
    void setModelFilter(const QString &model);
    /// Part of the car number, in either case; empty: any number.
    void setNumberFilter(const QString &numberPart);
    /// An operation id, `anyOperation` or `pendingOnly`.
    void setOperationFilter(int operation);
    /// Accepts every record again.
    void reset();

    QString modelFilter() const { return m_modelFilter; }
    QString numberFilter() const { return m_numberFilter; }
    int operationFilter() const { return m_operationFilter; }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    QString m_modelFilter;
    QString m_numberFilter;
    int m_operationFilter = anyOperation;
};
