#pragma once

#include <QIdentityProxyModel>

/// Shows a filter without its position column's texts: rows that are counted anew when one above them goes
/// are no change that QAbstractItemModelTester could allow for.
class PositionlessProxy final : public QIdentityProxyModel
{
public:
    using QIdentityProxyModel::QIdentityProxyModel;

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override
    {
        if (role == Qt::DisplayRole && index.column() == 0)
            return {};
        return QIdentityProxyModel::data(index, role);
    }
};
