#include "widgetreparentguard.h"

#include <QEvent>

WidgetReparentGuard::WidgetReparentGuard(QWidget &widget) : QObject(&widget), m_widget(widget)
{
    m_widget.installEventFilter(this);
    watchParent();
}

bool WidgetReparentGuard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ParentChange)
        watchParent();
    return QObject::eventFilter(watched, event);
}

void WidgetReparentGuard::watchParent()
{
    disconnect(m_parentDestroyed);
    // A widget emits destroyed() before it deletes its children, so the direct parent is enough, whichever of
    // its ancestors is deleted first.
    if (QWidget *parent = m_widget.parentWidget())
        m_parentDestroyed = connect(parent, &QObject::destroyed, this, &WidgetReparentGuard::leaveParent);
}

void WidgetReparentGuard::leaveParent()
{
    m_widget.setParent(nullptr);
}
