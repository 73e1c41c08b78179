#pragma once

#include "models/qeditabletreeview.h"

#include <QAbstractItemModelTester>
#include <QDrag>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMimeData>
#include <QPointer>
#include <QStandardItemModel>

#include <functional>

inline QString cellText(const QModelIndex &index)
{
    return index.isValid() ? QString("%1,%2").arg(index.row()).arg(index.column()) : "nowhere";
}

/// Logs what is set in the user role.
class ListModel final : public QStandardItemModel
{
public:
    explicit ListModel(QStringList *log) : QStandardItemModel(3, 1), m_log(log)
    {
        for (int row = 0; row < rowCount(); ++row)
            QStandardItemModel::setData(index(row, 0), QString("item %1").arg(row), Qt::EditRole);
    }

    bool setData(const QModelIndex &index, const QVariant &value, int role) override
    {
        if (role != Qt::UserRole)
            return QStandardItemModel::setData(index, value, role);
        m_log->append(QString("set %1 %2").arg(cellText(index), value.toString()));
        if (onUserRoleSet)
            onUserRoleSet();
        return true;
    }

    QMimeData *mimeData(const QModelIndexList &) const override
    {
        ++mimeDataCalls;
        QMimeData *made = makeMimeData ? makeMimeData() : nullptr;
        if (!firstMade)
            firstMade = made;
        return made;
    }

    std::function<void()> onUserRoleSet;
    std::function<QMimeData *()> makeMimeData;
    mutable int mimeDataCalls = 0;
    mutable QPointer<QMimeData> firstMade;

private:
    QStringList *const m_log;
};

/// A drag ends as the test wants it to, without a platform's drag.
class ListView final : public QEditableTreeView
{
public:
    using QEditableTreeView::execDrag;
    using QEditableTreeView::selectedIndexes;
    using QEditableTreeView::startDrag;

    bool isEditing() const { return state() == EditingState; }

    std::function<Qt::DropAction(QDrag &)> onDrag;

protected:
    Qt::DropAction execDrag(QDrag &drag) override
    {
        return onDrag ? onDrag(drag) : QEditableTreeView::execDrag(drag);
    }
};

/// A shown list of three items whose signals are logged.
struct List
{
    List() : model(&log)
    {
        view.setModel(&model);
        view.setDragEnabled(true);
        view.setSelectionMode(QAbstractItemView::ExtendedSelection);
        QObject::connect(&view, &QEditableTreeView::ctrlReturnClicked, &model,
                         [this](const QModelIndex &at) { log.append("ctrlReturn " + cellText(at)); });
        QObject::connect(&view, &QEditableTreeView::ctrlDelClicked, &model,
                         [this](const QModelIndex &at) { log.append("ctrlDel " + cellText(at)); });
        QObject::connect(&view, &QEditableTreeView::delClicked, &model, [this](int row, int column) {
            log.append(QString("del %1,%2").arg(row).arg(column));
        });
        QObject::connect(&view, &QEditableTreeView::itemsDroppedOut, &model,
                         [this](const QJsonArray &items, const QObject *target) {
                             log.append(
                                 "dropped "
                                 + QString::fromUtf8(QJsonDocument(items).toJson(QJsonDocument::Compact)));
                             dropTarget = target;
                         });
        view.resize(300, 200);
        view.show();
    }

    void startDrag(Qt::DropActions supported = Qt::MoveAction | Qt::CopyAction) { view.startDrag(supported); }

    QLineEdit *editor() const { return view.findChild<QLineEdit *>(); }

    QStringList log;
    const QObject *dropTarget = nullptr;
    ListModel model;
    QAbstractItemModelTester tester {&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    ListView view;
};
