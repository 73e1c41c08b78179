#include "models/currentrowtracker.h"

#include "models/cellkeys.h"

#include <QTreeView>

#include <algorithm>

CurrentRowTracker::CurrentRowTracker(QTreeView *view) : QObject(view), m_view(view)
{
    view->installEventFilter(this);
}

void CurrentRowTracker::install(QTreeView *view, QAbstractItemModel *model)
{
    auto *tracker = new CurrentRowTracker(view);
    // Before view and selection connect: both would make a neighbour of a removed row current.
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, tracker,
            &CurrentRowTracker::handleRowsAboutToBeRemoved);
    view->setModel(model);
    connect(model, &QAbstractItemModel::layoutAboutToBeChanged, tracker,
            &CurrentRowTracker::handleLayoutAboutToBeChanged);
    connect(model, &QAbstractItemModel::layoutChanged, tracker, &CurrentRowTracker::handleLayoutChanged);
    connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, tracker,
            [tracker](const QItemSelection &selected) {
                if (selected.isEmpty())
                    tracker->handleDeselection();
            });
    // Without this call, a view makes its first row current when it gets the focus.
    view->setCurrentIndex({});
}

bool CurrentRowTracker::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto &keyEvent = *static_cast<QKeyEvent *>(event);
        if (!CellKeys::isModified(keyEvent) && moveToNeighbour(keyEvent.key()))
            return true;
    }
    return QObject::eventFilter(watched, event);
}

void CurrentRowTracker::handleDeselection()
{
    const QModelIndex current = m_view->currentIndex();
    if (!current.isValid() || m_view->selectionModel()->isSelected(current))
        return;
    m_rowAbove = current.row() - 1;
    m_rowBelow = current.row() + 1;
    m_column = current.column();
    m_view->selectionModel()->setCurrentIndex({}, QItemSelectionModel::NoUpdate);
}

void CurrentRowTracker::handleRowsAboutToBeRemoved(const QModelIndex &parent, int first, int last)
{
    const QModelIndex current = m_view->currentIndex();
    if (!current.isValid() || current.parent() != parent || current.row() < first || current.row() > last)
        return;
    m_view->setCurrentIndex({});
    m_rowAbove = first - 1;
    m_rowBelow = first;
    m_column = current.column();
}

void CurrentRowTracker::handleLayoutAboutToBeChanged()
{
    const QModelIndex current = m_view->currentIndex();
    m_rowBeforeChange = current.row();
    if (current.isValid())
        m_column = current.column();
}

void CurrentRowTracker::handleLayoutChanged()
{
    if (m_rowBeforeChange < 0 || m_view->currentIndex().isValid())
        return;
    m_rowAbove = m_rowBeforeChange - 1;
    m_rowBelow = m_rowBeforeChange;
}

bool CurrentRowTracker::moveToNeighbour(int key)
{
    const int rowCount = m_view->model()->rowCount();
    const int columnCount = m_view->model()->columnCount();
    const bool isArrow =
        key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Left || key == Qt::Key_Right;
    if (!isArrow || m_rowBelow < 0 || rowCount == 0 || columnCount == 0 || m_view->currentIndex().isValid())
        return false;
    const int row = std::clamp(key == Qt::Key_Up ? m_rowAbove : m_rowBelow, 0, rowCount - 1);
    m_view->setCurrentIndex(m_view->model()->index(row, qMin(m_column, columnCount - 1)));
    return true;
}
