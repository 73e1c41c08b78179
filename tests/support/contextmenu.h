#pragma once

#include <QAbstractScrollArea>
#include <QApplication>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <QWindow>
#include <QtTest>

/// Right-clicks into a view as the window system does, and clicks the action with that text in the menu. The
/// view may be destroyed by the action.
inline void chooseFromContextMenu(QAbstractScrollArea *view, const QPoint &position, const QString &text)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, text] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu || !menu->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        for (QAction *action : menu->actions()) {
            if (action->text() == text) {
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
                return;
            }
        }
        menu->close();
        QFAIL(qPrintable(text));
    });
    timer->start(1);
    // Not a click: the window may be destroyed before the release.
    const QPointer<QWindow> window = view->window()->windowHandle();
    QTest::mousePress(window, Qt::RightButton, {}, view->viewport()->mapTo(view->window(), position));
    if (window)
        QTest::mouseRelease(window, Qt::RightButton);
}

/// A place in the view below its last row.
inline QPoint emptyPlace(const QAbstractScrollArea &view)
{
    return view.viewport()->rect().bottomLeft() + QPoint(5, -5);
}
