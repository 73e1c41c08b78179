#include "models/qeditabletreeview.h"

#include "models/cellstep.h"
#include "models/draggeditems.h"

#include <QDrag>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <memory>

QEditableTreeView::QEditableTreeView(QWidget *parent) : QTreeView(parent)
{
}

void QEditableTreeView::keyPressEvent(QKeyEvent *event)
{
    const bool ctrl = event->modifiers() & Qt::ControlModifier;
    switch (event->key()) {
    case Qt::Key_Insert:
        emit ctrlReturnClicked(currentIndex());
        break;
    case Qt::Key_Return:
        if (ctrl)
            emit ctrlReturnClicked(currentIndex());
        else
            startEditing();
        break;
    case Qt::Key_Enter: // with Ctrl as well: only the main Return key combines with it
    case Qt::Key_F2:
        startEditing();
        break;
    case Qt::Key_Delete:
        if (ctrl)
            emit ctrlDelClicked(currentIndex());
        else if (state() != EditingState)
            emit delClicked(currentIndex().row(), currentIndex().column());
        break;
    default:
        break;
    }
    QTreeView::keyPressEvent(event);
}

void QEditableTreeView::updateEditorGeometries()
{
    QTreeView::updateEditorGeometries();
    // When the row under an editor vanishes in a layout change, Qt drops the editor but stays in the editing
    // state, in which nothing else can be edited.
    if (state() == EditingState && !isPersistentEditorOpen(currentIndex()))
        setState(NoState);
}

void QEditableTreeView::startEditing()
{
    if (state() == EditingState || !model())
        return;
    const QModelIndex current = currentIndex();
    model()->setData(current, QStringLiteral("editStarted"), Qt::UserRole);

    const QModelIndex cell = model()->index(current.row(), current.column());
    // For any other cell edit() would print a warning.
    constexpr Qt::ItemFlags open = Qt::ItemIsEditable | Qt::ItemIsEnabled;
    if ((model()->flags(cell) & open) == open)
        edit(cell);
}

QModelIndex QEditableTreeView::moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers)
{
    const bool isSideways = cursorAction == MoveLeft || cursorAction == MoveRight;
    if (!isSideways || !currentIndex().isValid())
        return QTreeView::moveCursor(cursorAction, modifiers);
    return cellBesideCurrent(*this, cursorAction == MoveLeft ? -1 : 1);
}

void QEditableTreeView::mousePressEvent(QMouseEvent *event)
{
    m_pressedIndex = indexAt(event->pos());
    m_pressModifiers = event->modifiers();
    QTreeView::mousePressEvent(event);
}

void QEditableTreeView::dropEvent(QDropEvent *event)
{
    m_lastDropPoint = mapToGlobal(event->pos());
    QTreeView::dropEvent(event);
}

void QEditableTreeView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    emit updateSelection(selected, deselected);
}

void QEditableTreeView::startDrag(Qt::DropActions supportedActions)
{
    if (!(supportedActions & Qt::MoveAction)) {
        QTreeView::startDrag(supportedActions);
        return;
    }
    const QModelIndexList indexes = selectedIndexes();
    if (indexes.isEmpty())
        return;

    std::unique_ptr<QMimeData> mimeData(model()->mimeData(indexes));
    const auto items = mimeData
        ? DraggedItems::fromPayload(mimeData->data(QStringLiteral("application/json")))
        : std::nullopt;
    if (!items) {
        mimeData.reset();
        QTreeView::startDrag(supportedActions);
        return;
    }

    const QPointer<QDrag> drag = new QDrag(this); // deleted by Qt when the drag ends
    drag->setPixmap(dragPixmap(*items));
    drag->setMimeData(mimeData.release());
    drag->setHotSpot({0, 0});
    if (execDrag(*drag) == Qt::MoveAction && drag)
        emit itemsDroppedOut(*items, drag->target());
}

Qt::DropAction QEditableTreeView::execDrag(QDrag &drag)
{
    return drag.exec(Qt::MoveAction);
}

QPixmap QEditableTreeView::dragPixmap(const QJsonArray &items)
{
    constexpr int side = 64;
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    const QRect whole = pixmap.rect();
    QPainter painter(&pixmap);
    painter.setBrush(QBrush(DraggedItems::fill(items), Qt::SolidPattern));
    painter.setPen(QPen(Qt::black));
    if (items.size() > 1) {
        painter.drawRect(whole.adjusted(0, 0, -17, -17));
        painter.drawRect(whole.adjusted(4, 4, -9, -9));
        painter.drawRect(whole.adjusted(8, 8, -1, -1));
    } else {
        painter.drawRect(whole.adjusted(0, 0, -1, -1));
    }
    painter.drawText(whole, Qt::AlignCenter, DraggedItems::label(items));
    return pixmap;
}
