#include "settings/modaldialog.h"

#include <QApplication>
#include <QScreen>
#include <QWindow>

namespace {

QWidget *windowToBeAbove(const QWidget &owner)
{
    QWidget *window = owner.window();
    return window->isVisible() ? window : QApplication::activeWindow();
}

void centerOn(QDialog &dialog, const QWidget &window)
{
    dialog.ensurePolished();
    if (dialog.testAttribute(Qt::WA_Resized))
        dialog.resize(dialog.size().expandedTo(dialog.minimumSizeHint())); // as showing it would
    else
        dialog.adjustSize();
    const QRect available = window.windowHandle()->screen()->availableGeometry();
    QRect geometry = dialog.rect();
    geometry.moveCenter(window.frameGeometry().center());
    geometry.moveRight(qMin(geometry.right(), available.right()));
    geometry.moveBottom(qMin(geometry.bottom(), available.bottom()));
    geometry.moveLeft(qMax(geometry.left(), available.left()));
    geometry.moveTop(qMax(geometry.top(), available.top()));
    dialog.move(geometry.topLeft());
}

} // namespace

void placeAboveOwner(QDialog &dialog, const QWidget &owner)
{
    const bool isPlacedByQt = dialog.parentWidget() && owner.window()->isVisible();
    const QWidget *window = windowToBeAbove(owner);
    if (isPlacedByQt || !window || !window->windowHandle())
        return;
    dialog.winId(); // creates the window
    dialog.windowHandle()->setTransientParent(window->windowHandle());
    centerOn(dialog, *window);
}
