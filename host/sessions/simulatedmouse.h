#pragma once

#include <QModelIndex>

class QAbstractItemView;
class QPushButton;

/// Sends mouse events to a view of the plug-in.
namespace SimulatedMouse {

/// Moves to the cell. Returns the button that the view shows there, or null.
QPushButton *moveTo(QAbstractItemView &view, const QModelIndex &cell);

/// Both return when the dialog or menu that they open is closed.
void doubleClick(QAbstractItemView &view, const QModelIndex &cell);
void openContextMenu(QAbstractItemView &view, const QModelIndex &cell);

} // namespace SimulatedMouse
