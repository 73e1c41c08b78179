#pragma once

#include <QPersistentModelIndex>
#include <QVector>

class QTreeView;

/// Scope guard around a change of a list's rows: afterwards the row at the top of the viewport is at the same
/// pixel again, or, if it was removed, the next visible one that was not. A list that is scrolled to its top
/// stays there. For flat views that scroll by pixels.
class ScrollPositionGuard final
{
    Q_DISABLE_COPY(ScrollPositionGuard)
public:
    explicit ScrollPositionGuard(QTreeView *view);
    ~ScrollPositionGuard();

private:
    struct VisibleRow
    {
        QPersistentModelIndex index;
        int top; ///< in the viewport
    };

    QTreeView *const m_view;
    QVector<VisibleRow> m_rows;
};
