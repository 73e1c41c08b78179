#include "settings/heldkeyfilter.h"

#include "models/cellkeys.h"

#include <QCoreApplication>

HeldKeyFilter::HeldKeyFilter()
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool HeldKeyFilter::eventFilter(QObject *watched, QEvent *event)
{
    const bool isKeyEvent = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (!isKeyEvent || !CellKeys::isActivation(static_cast<QKeyEvent *>(event)->key()))
        return QObject::eventFilter(watched, event);
    if (static_cast<QKeyEvent *>(event)->isAutoRepeat())
        return true;
    QCoreApplication::instance()->removeEventFilter(this); // the key is not held, or no longer
    return false;
}
