#pragma once

#include <QAbstractItemView>
#include <QList>
#include <QStringList>

class QAbstractButton;
class QStandardItem;
class QStandardItemModel;
class QTableView;

/// What the panels' tables have in common.
namespace TableViews {

/// A table of the model's rows that selects whole rows. The caller becomes its owner.
QTableView *make(QStandardItemModel *model, const char *objectName);

/// One item per text.
QList<QStandardItem *> makeRow(const QStringList &texts);

/// Makes each column as wide as the given text needs, in the table's font; an empty text leaves the width.
void setColumnWidths(QTableView &table, const QStringList &widest);

/// Enables the button while the view has a selection. Call after setModel().
void enableWithSelection(QAbstractButton &button, const QAbstractItemView &view);

} // namespace TableViews
