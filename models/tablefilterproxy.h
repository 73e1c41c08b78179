#pragma once

#include <QSortFilterProxyModel>

/// Base of the filters of the module's tables. Filtering again may be requested at any time, even while the
/// table replaces its rows or columns. GUI thread only.
class TableFilterProxy : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setSourceModel(QAbstractItemModel *model) override;
    /// To be called when the filter, or what it compares with, was changed.
    void refilter();

private:
    QMetaObject::Connection m_beforeSourceChange;
    QMetaObject::Connection m_afterSourceChange;
    bool m_isSourceChanging = false;
};
