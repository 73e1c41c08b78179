#pragma once

#include <QModelIndex>

class QAbstractItemView;
class QPushButton;

/// A mouse in a view of the plug-in, for a host that shows what a user would do there.
namespace ViewPointer {

/// Moves over the cell. Returns the button that the view offers there, or null.
QPushButton *moveOver(QAbstractItemView &view, const QModelIndex &cell);

/// Both of these return when the dialog or menu that they open is closed.
void doubleClick(QAbstractItemView &view, const QModelIndex &cell);
void openContextMenu(QAbstractItemView &view, const QModelIndex &cell);

} // namespace ViewPointer
