#include "host/widgets/selectionbutton.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QItemSelectionModel>

void enableWithSelection(QAbstractButton &button, const QAbstractItemView &view)
{
    const QItemSelectionModel *selection = view.selectionModel();
    const auto update = [&button, selection] { button.setEnabled(selection->hasSelection()); };
    QObject::connect(selection, &QItemSelectionModel::selectionChanged, &button, update);
    // A reset clears the selection without selectionChanged().
    QObject::connect(selection->model(), &QAbstractItemModel::modelReset, &button, update,
                     Qt::QueuedConnection);
    update();
}
