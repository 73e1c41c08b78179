#pragma once

#include <QObject>

class QAbstractItemModel;
class QModelIndex;
class QTreeView;

/// Keeps the current row of a view the one that the user chose. The focus alone makes no row current; a row
/// that was deselected or removed is no longer current, and no neighbour replaces it. The next arrow key
/// starts from its position. For flat views with single selection. GUI thread only.
class CurrentRowTracker final : public QObject
{
    Q_OBJECT
public:
    /// Shows the model in the view, which owns the tracker. Neither may be replaced later.
    static void install(QTreeView *view, QAbstractItemModel *model);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit CurrentRowTracker(QTreeView *view);

    void handleDeselection();
    void handleRowsAboutToBeRemoved(const QModelIndex &parent, int first, int last);
    void handleLayoutAboutToBeChanged();
    void handleLayoutChanged();
    bool moveToNeighbour(int key);

    QTreeView *const m_view;
    int m_rowBeforeChange = -1; ///< while the layout changes
    // The neighbours of the row that was current last, and its column.
    int m_rowAbove = -1;
    int m_rowBelow = -1;
    int m_column = 0;
};
