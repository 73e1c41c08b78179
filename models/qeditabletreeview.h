#pragma once

#include <QItemSelection>
#include <QJsonArray>
#include <QTreeView>

class QDrag;

/// A flat list with keys for editing, adding and deleting, and a drag source. A model whose mime data holds
/// "application/json" with an object {"srcList": [...]} is dragged with a picture of its items ("name",
/// "color"); any other model as item views do.
class QEditableTreeView : public QTreeView
{
    Q_OBJECT
public:
    explicit QEditableTreeView(QWidget *parent = nullptr);

    QPoint lastDropPoint() const { return m_lastDropPoint; } ///< on the screen
    QModelIndex pressedIndex() const { return m_pressedIndex; }
    Qt::KeyboardModifiers pressModifiers() const { return m_pressModifiers; }

    /// The picture of dragged items: one card with its name, or a stack with the number of items.
    static QPixmap dragPixmap(const QJsonArray &items);

signals:
    void ctrlReturnClicked(QModelIndex index);
    void ctrlDelClicked(QModelIndex index);
    void updateSelection(QItemSelection selected, QItemSelection deselected);
    void delClicked(int row, int column);
    /// The items were moved onto the target; the receiver removes them here.
    void itemsDroppedOut(QJsonArray jsonList, const QObject *target);

protected slots:
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;

protected:
    void updateEditorGeometries() override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    /// Left and right reach every cell of the row.
    QModelIndex moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers) override;
    void dropEvent(QDropEvent *event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    /// Runs a drag to its end and returns the resulting action.
    virtual Qt::DropAction execDrag(QDrag &drag);

private:
    void startEditing();

    QPoint m_lastDropPoint;
    QPersistentModelIndex m_pressedIndex;
    Qt::KeyboardModifiers m_pressModifiers;
};
