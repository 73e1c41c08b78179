#include "models/focusmark.h"

#include <QCoreApplication>
#include <QFocusEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QTreeView>

FocusMark::FocusMark(QTreeView *view) : QObject(view), m_view(view)
{
    view->installEventFilter(this);
    view->viewport()->installEventFilter(this);
}

void FocusMark::install(QTreeView *view)
{
    new FocusMark(view);
}

bool FocusMark::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        setUsedByKeys(true);
        break;
    case QEvent::FocusIn: {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
            || reason == Qt::ShortcutFocusReason)
            setUsedByKeys(true);
        break;
    }
    case QEvent::MouseButtonPress:
        setUsedByKeys(false);
        break;
    case QEvent::Paint:
        if (watched == m_view || !m_isUsedByKeys || !m_view->hasFocus() || m_isPainting)
            break;
        {
            const QScopedValueRollback<bool> painting(m_isPainting, true);
            QCoreApplication::sendEvent(watched, event); // the view paints its cells
        }
        paint();
        return true;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void FocusMark::setUsedByKeys(bool isUsedByKeys)
{
    if (isUsedByKeys || m_isUsedByKeys)
        m_view->viewport()->update();
    m_isUsedByKeys = isUsedByKeys;
}

void FocusMark::paint() const
{
    const QModelIndex current = m_view->currentIndex();
    const QRect marked = current.isValid() ? m_view->visualRect(current) : m_view->viewport()->rect();
    if (marked.isEmpty())
        return;
    const bool isSelected = current.isValid() && m_view->selectionModel()->isSelected(current);
    const QColor color =
        m_view->palette().color(isSelected ? QPalette::HighlightedText : QPalette::Highlight);
    constexpr int thickness = 2;
    QPainter painter(m_view->viewport());
    painter.setPen(QPen(color, thickness, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(marked.adjusted(thickness, thickness, -thickness, -thickness));
}
