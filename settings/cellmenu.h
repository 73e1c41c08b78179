#pragma once

#include <QObject>

#include <functional>

class QAbstractItemView;
class QMenu;
class QModelIndex;

/// Shows a context menu about one cell of a view: at a click the cell under the pointer, for the menu key the
/// current one. There is no menu where there is no cell. GUI thread only.
class CellMenu final : public QObject
{
    Q_OBJECT
public:
    /// Adds the actions that the cell offers. The model may change while the menu is open: actions must not
    /// keep the index.
    using Fill = std::function<void(QMenu &menu, const QModelIndex &cell)>;

    /// The view owns this object.
    static void install(QAbstractItemView *view, const Fill &fill);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    CellMenu(QAbstractItemView *view, const Fill &fill);

    /// A point of the cell that is visible, on the screen.
    QPoint placeOf(const QModelIndex &cell) const;

    QAbstractItemView *const m_view;
    const Fill m_fill;
};
