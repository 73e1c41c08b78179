#include "settings/sizehintminimum.h"

#include <QDialog>
#include <QEvent>
#include <QScreen>

SizeHintMinimum::SizeHintMinimum(QDialog *dialog) : QObject(dialog)
{
    dialog->installEventFilter(this);
}

bool SizeHintMinimum::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Polish || event->type() == QEvent::LayoutRequest
        || event->type() == QEvent::Show) {
        auto *dialog = qobject_cast<QDialog *>(watched);
        const QSize room = dialog->screen()->availableSize();
        dialog->setMinimumSize(dialog->sizeHint().boundedTo(room).expandedTo(dialog->minimumSizeHint()));
    }
    return QObject::eventFilter(watched, event);
}
