#include "settings/actionsmenu.h"

#include "settings/guardedmenu.h"

#include <QAbstractScrollArea>
#include <QContextMenuEvent>
#include <QMenu>

ActionsMenu::ActionsMenu(QAbstractScrollArea *view) : QObject(view), m_view(view)
{
    view->installEventFilter(this); // the menu key
    view->viewport()->installEventFilter(this); // the mouse
}

void ActionsMenu::install(QAbstractScrollArea *view)
{
    new ActionsMenu(view);
}

bool ActionsMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ContextMenu || m_view->actions().isEmpty())
        return QObject::eventFilter(watched, event);
    event->accept();
    execGuardedMenu(*m_view, static_cast<QContextMenuEvent *>(event)->globalPos(),
                    [this](QMenu &menu) { menu.addActions(m_view->actions()); });
    return true; // this filter may be destroyed
}
