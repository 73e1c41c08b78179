#include "host/widgets/tableviews.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QStandardItemModel>
#include <QTableView>

namespace {

constexpr int cellMargin = 16;

/// F2 edits the current cell, although the window has a shortcut of that key.
class Table final : public QTableView
{
protected:
    bool event(QEvent *event) override
    {
        const bool isF2 =
            event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent *>(event)->key() == Qt::Key_F2;
        if (isF2 && editTriggers().testFlag(EditKeyPressed)
            && currentIndex().flags().testFlag(Qt::ItemIsEditable))
            event->accept();
        return QTableView::event(event);
    }
};

} // namespace

QTableView *TableViews::make(QStandardItemModel *model, const char *objectName)
{
    auto *view = new Table;
    view->setObjectName(QLatin1String(objectName));
    view->setModel(model);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setAlternatingRowColors(true);
    view->verticalHeader()->hide();
    view->horizontalHeader()->setStretchLastSection(true);
    view->horizontalHeader()->setHighlightSections(false);
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
