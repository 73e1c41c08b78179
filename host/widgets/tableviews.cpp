#include "host/widgets/tableviews.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QStandardItemModel>
#include <QTableView>

namespace {
constexpr int cellMargin = 16;
} // namespace

QTableView *TableViews::make(QStandardItemModel *model, const char *objectName)
{
    auto *view = new QTableView;
    view->setObjectName(QLatin1String(objectName));
    view->setModel(model);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setAlternatingRowColors(true);
    view->verticalHeader()->hide();
    view->horizontalHeader()->setStretchLastSection(true);
    return view;
}

QList<QStandardItem *> TableViews::makeRow(const QStringList &texts)
{
    QList<QStandardItem *> row;
    for (const QString &text : texts)
        row.append(new QStandardItem(text));
    return row;
}

void TableViews::setColumnWidths(QTableView &table, const QStringList &widest)
{
    for (int column = 0; column < widest.size(); ++column) {
        if (!widest.at(column).isEmpty())
            table.setColumnWidth(column,
                                 table.fontMetrics().horizontalAdvance(widest.at(column)) + cellMargin);
    }
}

void TableViews::enableWithSelection(QAbstractButton &button, const QAbstractItemView &view)
{
    const QItemSelectionModel *selection = view.selectionModel();
    const auto update = [&button, selection] { button.setEnabled(selection->hasSelection()); };
    QObject::connect(selection, &QItemSelectionModel::selectionChanged, &button, update);
    // A reset clears the selection without selectionChanged().
    QObject::connect(selection->model(), &QAbstractItemModel::modelReset, &button, update,
                     Qt::QueuedConnection);
    update();
}
