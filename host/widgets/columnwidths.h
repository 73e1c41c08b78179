#pragma once

#include <QStringList>

class QTableView;

/// Makes each column as wide as the given text needs, in the table's font; an empty text leaves it alone.
void setColumnWidths(QTableView &table, const QStringList &widest);
