#pragma once

#include <QModelIndex>

class QTreeView;

/// The cell beside the current one by `step` columns (1 or -1) as they are shown; the current one itself at
/// either end. For the arrow keys of tables that select rows, in which Qt only scrolls sideways.
QModelIndex cellBesideCurrent(const QTreeView &view, int step);
