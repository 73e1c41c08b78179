#pragma once

#include <QObject>

class QTreeView;

/// Performs a view's pending layout before the view handles hover events. QAbstractItemView holds a reference
/// to the hovered index while it requests the index's rectangle, which performs the layout. A layout that
/// shows or hides a scroll bar sends further hover events; they replace the index and leave the reference
/// dangling. GUI thread only.
class HoverLayoutFilter final : public QObject
{
    Q_OBJECT
public:
    /// The view owns the filter.
    static void install(QTreeView *view);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit HoverLayoutFilter(QTreeView *view);

    QTreeView *const m_view;
};
