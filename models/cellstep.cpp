#include "models/cellstep.h"

#include <QHeaderView>
#include <QTreeView>

QModelIndex cellBesideCurrent(const QTreeView &view, int step)
{
    const QModelIndex current = view.currentIndex();
    const QHeaderView &header = *view.header();
    for (int shown = header.visualIndex(current.column()) + step; shown >= 0 && shown < header.count();
         shown += step) {
        const int column = header.logicalIndex(shown);
        if (!header.isSectionHidden(column))
            return current.siblingAtColumn(column);
    }
    return current;
}
