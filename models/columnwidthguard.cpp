#include "models/columnwidthguard.h"

#include <QTreeView>

ColumnWidthGuard::ColumnWidthGuard(QTreeView *view, const ClearbackgroundTableModel &model)
    : m_view(view), m_model(model)
{
    for (int column = 0; column < m_model.columnCount(); ++column)
        m_widths.insert(m_model.columnKey(column), m_view->columnWidth(column));
}

ColumnWidthGuard::~ColumnWidthGuard()
{
    m_model.applyColumnWidths(m_view);
    for (int column = 0; column < m_model.columnCount(); ++column) {
        const auto width = m_widths.constFind(m_model.columnKey(column));
        if (width != m_widths.cend())
            m_view->setColumnWidth(column, *width);
    }
}
