#pragma once

#include <QLatin1String>
#include <QObject>
#include <QPointer>
#include <QWidget>

class Findings;

/// Judges what the host does with one widget of the plug-in. Takes the widget out of a parent that is being
/// destroyed, as the garage module does.
class WidgetJudge final : public QObject
{
    Q_OBJECT
public:
    /// `name` is the widget's name in sentences; `deletedId` is the finding if the host deletes it.
    WidgetJudge(QWidget &widget, QString name, QLatin1String deletedId, Findings &findings);

    /// From now on the plug-in itself deletes the widget.
    void finish();

signals:
    void shown();
    void hidden();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watchParent();
    void leaveParent();
    void judgeAttributes();
    void judgeRemovedChild(const QObject *child);

    const QPointer<QWidget> m_widget;
    const QString m_name;
    const QLatin1String m_deletedId;
    Findings &m_findings;
    QList<QPointer<QWidget>> m_parts; // direct children
    QMetaObject::Connection m_parentDestroyed;
    QMetaObject::Connection m_destroyed;
};
