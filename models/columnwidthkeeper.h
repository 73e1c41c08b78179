#pragma once

#include "models/clearbackgroundtablemodel.h"

#include <QHash>

/// Scope around a change of a model's columns: afterwards the view's columns that were there before have
/// their widths back, and new ones the model's. A header that re-counts its sections forgets both.
class ColumnWidthKeeper final
{
    Q_DISABLE_COPY(ColumnWidthKeeper)
public:
    /// The view shows the model's columns in the model's order, directly or through a proxy.
    ColumnWidthKeeper(QTreeView *view, const ClearbackgroundTableModel &model);
    ~ColumnWidthKeeper();

private:
    QTreeView *const m_view;
    const ClearbackgroundTableModel &m_model;
    QHash<QString, int> m_widths; ///< by column key
};
