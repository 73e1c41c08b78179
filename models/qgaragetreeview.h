#pragma once

#include <QPushButton>
#include <QTreeView>

/// Offers one push button over the cell under the pointer: for a service or for the car's complaint,
/// as specified by the model's flags (CellFlags). Requires mouse tracking, which the owner enables. On the
/// current cell, Return, Enter, Space and Insert do what its button does; the arrow keys reach every cell.
class QGarageTreeView final : public QTreeView
{
    Q_OBJECT
public:
    explicit QGarageTreeView(QWidget *parent = nullptr);

    /// What the buttons do, for people.
    static QString serviceText();
    static QString attentionText();

signals:
    /// The cell under the centre of the button; it is the current one by then.
    void serviceButtonClicked(QModelIndex index);
    void attentionButtonClicked(QModelIndex index);

public slots:
    void serviceButtonClick();

protected:
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    QModelIndex moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void setUpButton(QPushButton &button, const QString &icon, const QString &accessibleName);
    /// The button that the cell offers, or null.
    QPushButton *buttonOf(const QModelIndex &cell);
    void announceClick(const QPushButton &button, const QModelIndex &cell);

    QPushButton m_serviceButton;
    QPushButton m_attentionButton;
};
