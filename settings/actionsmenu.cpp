#include "settings/actionsmenu.h"

#include <QAbstractScrollArea>
#include <QContextMenuEvent>
#include <QMenu>

#include <memory>

namespace {

/// Runs a menu of the view's actions to its end. The view may be destroyed meanwhile.
void execMenu(QAbstractScrollArea &view, const QPoint &position)
{
    // A child of the view for its style sheets, but not destroyed with it while an action runs.
    const auto menu = std::make_unique<QMenu>(&view);
    QObject::connect(&view, &QObject::destroyed, menu.get(), [&menu] {
        menu->setParent(nullptr);
        menu->close();
    });
    menu->addActions(view.actions());
    menu->exec(position);
}

} // namespace

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
    execMenu(*m_view, static_cast<QContextMenuEvent *>(event)->globalPos());
    return true; // this filter may be destroyed
}
