#pragma once

#include <QObject>
#include <QWidget>

/// Keeps a widget alive when its parent is destroyed: the widget is removed from the parent, hidden, instead
/// of being deleted with it. A host may therefore put a widget of the plug-in into its own windows.
class WidgetReparentGuard final : public QObject
{
    Q_OBJECT
public:
    /// The guard becomes a child of the widget.
    explicit WidgetReparentGuard(QWidget &widget);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watchParent();
    void leaveParent();

    QWidget &m_widget;
    QMetaObject::Connection m_parentDestroyed;
};
