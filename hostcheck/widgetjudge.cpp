#include "hostcheck/widgetjudge.h"

#include "hostcheck/findings.h"

#include <QChildEvent>

WidgetJudge::WidgetJudge(QWidget &widget, QString name, QLatin1String deletedId, Findings &findings)
    : m_widget(&widget), m_name(std::move(name)), m_deletedId(deletedId), m_findings(findings)
{
    for (QObject *child : widget.children()) {
        if (auto *part = qobject_cast<QWidget *>(child))
            m_parts.append(part);
    }
    widget.installEventFilter(this);
    watchParent();
    m_destroyed = connect(&widget, &QObject::destroyed, this, [this] {
        disconnect(m_parentDestroyed);
        m_findings.report(m_deletedId, QStringLiteral("The host deleted the %1.").arg(m_name));
    });
}

void WidgetJudge::finish()
{
    disconnect(m_destroyed);
    disconnect(m_parentDestroyed);
    if (m_widget)
        m_widget->removeEventFilter(this);
}

bool WidgetJudge::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ParentChange:
        watchParent();
        judgeAttributes();
        break;
    case QEvent::Show:
        judgeAttributes();
        emit shown();
        break;
    case QEvent::Hide:
        emit hidden();
        break;
    case QEvent::Close:
        judgeAttributes();
        break;
    case QEvent::ChildRemoved:
        judgeRemovedChild(static_cast<QChildEvent *>(event)->child());
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void WidgetJudge::watchParent()
{
    disconnect(m_parentDestroyed);
    // A widget emits destroyed() before it deletes its children.
    if (m_widget && m_widget->parentWidget())
        m_parentDestroyed =
            connect(m_widget->parentWidget(), &QObject::destroyed, this, &WidgetJudge::leaveParent);
}

void WidgetJudge::leaveParent()
{
    m_widget->setParent(nullptr);
}

void WidgetJudge::judgeAttributes()
{
    if (m_widget->testAttribute(Qt::WA_DeleteOnClose))
        m_findings.report(QLatin1String("widget-delete-on-close"),
                          QStringLiteral("The host set WA_DeleteOnClose for the %1.").arg(m_name));
}

void WidgetJudge::judgeRemovedChild(const QObject *child)
{
    for (const QPointer<QWidget> &part : qAsConst(m_parts)) {
        if (part && part == child)
            m_findings.report(QLatin1String("widget-taken-apart"),
                              QStringLiteral("The host took a widget out of the %1.").arg(m_name));
    }
}
