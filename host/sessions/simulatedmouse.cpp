#include "host/sessions/simulatedmouse.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>

namespace {

void sendMouse(QWidget &viewport, QEvent::Type type, const QPoint &point)
{
    const bool isMove = type == QEvent::MouseMove;
    const bool isDown = type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick;
    QMouseEvent event(type, point, viewport.mapToGlobal(point), isMove ? Qt::NoButton : Qt::LeftButton,
                      isDown ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&viewport, &event);
}

} // namespace

QPushButton *SimulatedMouse::moveTo(QAbstractItemView &view, const QModelIndex &cell)
{
    sendMouse(*view.viewport(), QEvent::MouseMove, view.visualRect(cell).center());
    for (QPushButton *button : view.viewport()->findChildren<QPushButton *>()) {
        if (button->isVisible())
            return button;
    }
    return nullptr;
}

void SimulatedMouse::doubleClick(QAbstractItemView &view, const QModelIndex &cell)
{
    const QPoint point = view.visualRect(cell).center();
    const QPointer<QWidget> viewport = view.viewport();
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                    QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
        if (viewport)
            sendMouse(*viewport, type, point);
    }
}

void SimulatedMouse::openContextMenu(QAbstractItemView &view, const QModelIndex &cell)
{
    view.setCurrentIndex(cell);
    const QPoint point = view.visualRect(cell).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, point, view.viewport()->mapToGlobal(point));
    QApplication::sendEvent(view.viewport(), &event);
}
