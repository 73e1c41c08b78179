#pragma once

#include <QObject>
#include <QWidget>

/// Lets a host put a widget of ours into its own windows: when the widget's parent is destroyed, the widget
/// is taken out of it first, hidden, instead of being deleted along with it.
class AdoptionGuard final : public QObject
{
    Q_OBJECT
public:
    /// Guards the widget for as long as both live.
    explicit AdoptionGuard(QWidget &widget);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watchParent();
    void leaveParent();

    QWidget &m_widget;
    QMetaObject::Connection m_parentDestroyed;
};
