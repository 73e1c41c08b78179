#pragma once

#include <QObject>

class QAbstractScrollArea;

/// Shows the actions of a view as its context menu, in place of the menu that Qt shows for
/// Qt::ActionsContextMenu: that one is a child of the view on the stack, and an action during which the host
/// destroys the view would destroy it twice. The policy of the view is not changed. GUI thread only.
class ActionsMenu final : public QObject
{
    Q_OBJECT
public:
    /// The view owns the filter.
    static void install(QAbstractScrollArea *view);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit ActionsMenu(QAbstractScrollArea *view);

    QAbstractScrollArea *const m_view;
};
