#include "host/widgets/columnwidths.h"

#include <QTableView>

namespace {
constexpr int cellMargin = 16;
} // namespace

void setColumnWidths(QTableView &table, const QStringList &widest)
{
    for (int column = 0; column < widest.size(); ++column) {
        if (!widest.at(column).isEmpty())
            table.setColumnWidth(column,
                                 table.fontMetrics().horizontalAdvance(widest.at(column)) + cellMargin);
    }
}
