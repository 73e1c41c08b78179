#include "models/hoverlayoutfilter.h"

#include <QEvent>
#include <QTreeView>

HoverLayoutFilter::HoverLayoutFilter(QTreeView *view) : QObject(view), m_view(view)
{
    view->viewport()->installEventFilter(this);
}

void HoverLayoutFilter::install(QTreeView *view)
{
    new HoverLayoutFilter(view);
}

bool HoverLayoutFilter::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Leave:
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
    case QEvent::HoverLeave:
        m_view->indexAt({}); // performs a pending layout
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
