#include "adoptionguard.h"

#include <QEvent>

AdoptionGuard::AdoptionGuard(QWidget &widget) : QObject(&widget), m_widget(widget)
{
    m_widget.installEventFilter(this);
    watchParent();
}

bool AdoptionGuard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ParentChange)
        watchParent();
    return QObject::eventFilter(watched, event);
}

void AdoptionGuard::watchParent()
{
    disconnect(m_parentDestroyed);
    // A widget says that it is destroyed before it deletes its children, so the direct parent is enough,
    // whichever of its ancestors goes first.
    if (QWidget *parent = m_widget.parentWidget())
        m_parentDestroyed = connect(parent, &QObject::destroyed, this, &AdoptionGuard::leaveParent);
}

void AdoptionGuard::leaveParent()
{
    m_widget.setParent(nullptr);
}
