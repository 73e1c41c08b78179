#pragma once

#include "models/clearbackgroundtablemodel.h"

#include <QHash>

/// Scope guard around a change of a model's columns: afterwards the existing columns of the view have their
/// old widths, and new ones those of the model. QHeaderView loses both when the number of sections changes.
class ColumnWidthGuard final
{
    Q_DISABLE_COPY(ColumnWidthGuard)
public:
    /// The view shows the model's columns in the model's order, directly or through a proxy.
    ColumnWidthGuard(QTreeView *view, const ClearbackgroundTableModel &model);
    ~ColumnWidthGuard();

private:
    QTreeView *const m_view;
    const ClearbackgroundTableModel &m_model;
    QHash<QString, int> m_widths; ///< by column key
};
