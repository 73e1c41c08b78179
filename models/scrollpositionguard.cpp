#include "models/scrollpositionguard.h"

#include <QScrollBar>
#include <QTreeView>

#include <algorithm>

ScrollPositionGuard::ScrollPositionGuard(QTreeView *view) : m_view(view)
{
    const QScrollBar &bar = *view->verticalScrollBar();
    if (bar.value() == 0) // a pending layout would not change that, and takes long for many rows
        return;
    QModelIndex row = view->indexAt({}); // performs a pending layout, which may move the scroll bar
    if (bar.value() == 0)
        return;
    for (; row.isValid(); row = view->indexBelow(row)) {
        const int top = view->visualRect(row).top();
        if (top >= view->viewport()->height())
            break;
        m_rows.append({row, top});
    }
}

ScrollPositionGuard::~ScrollPositionGuard()
{
    const auto row = std::find_if(m_rows.cbegin(), m_rows.cend(),
                                  [](const VisibleRow &candidate) { return candidate.index.isValid(); });
    if (row == m_rows.cend())
        return;
    const int top =
        m_view->visualRect(row->index).top(); // performs the layout, which may move the scroll bar
    m_view->verticalScrollBar()->setValue(m_view->verticalScrollBar()->value() + top - row->top);
}
