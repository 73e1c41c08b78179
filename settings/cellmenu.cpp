#include "settings/cellmenu.h"

#include "settings/guardedmenu.h"

#include <QAbstractItemView>
#include <QContextMenuEvent>

CellMenu::CellMenu(QAbstractItemView *view, const Fill &fill) : QObject(view), m_view(view), m_fill(fill)
{
    view->installEventFilter(this); // the menu key
    view->viewport()->installEventFilter(this); // the mouse
}

void CellMenu::install(QAbstractItemView *view, const Fill &fill)
{
    new CellMenu(view, fill);
}

bool CellMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ContextMenu)
        return QObject::eventFilter(watched, event);

    const auto *menuEvent = static_cast<QContextMenuEvent *>(event);
    const bool isKey = menuEvent->reason() == QContextMenuEvent::Keyboard;
    QModelIndex cell;
    if (isKey)
        cell = m_view->currentIndex();
    else if (watched == m_view->viewport())
        cell = m_view->indexAt(menuEvent->pos());
    if (!cell.isValid())
        return QObject::eventFilter(watched, event);

    event->accept();
    execGuardedMenu(*m_view, isKey ? placeOf(cell) : menuEvent->globalPos(),
                    [this, &cell](QMenu &menu) { m_fill(menu, cell); });
    return true;
}

QPoint CellMenu::placeOf(const QModelIndex &cell) const
{
    m_view->scrollTo(cell);
    const QRect visible = m_view->visualRect(cell) & m_view->viewport()->rect();
    return m_view->viewport()->mapToGlobal(visible.center());
}
