#pragma once

#include "settings/garagesettingsform.h"
#include "support/garagetest.h"
#include "support/userinput.h"

#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QTreeView>

/// Base of the settings page's tests: the page on a real file, used with mouse and keyboard; what it wrote is
/// read through another connection. The file has the operations 2 "Масло" and 5 "Цепь", two cars SODI, one
/// Rimo, and one limit.
class SettingsPageTest : public DatabaseTest
{
    Q_OBJECT
protected:
    /// Shows the page inside a window of the host.
    void open();

    template<class Type = QWidget> Type *find(const char *name) const { return child<Type>(*m_form, name); }
    QTreeView *operationsView() const { return find<QTreeView>("tvServiceOperations"); }
    QTreeView *scheduleView() const { return find<QTreeView>("tvServiceReglament"); }
    QAbstractItemModel *operations() const { return operationsView()->model(); }
    QAbstractItemModel *schedule() const { return scheduleView()->model(); }
    /// Text of a cell of the schedule.
    QString scheduleCell(int row, int column) const
    {
        return schedule()->index(row, column).data().toString();
    }
    /// Titles of the schedule's operation columns.
    QStringList titles() const;
    void trigger(const char *action) const;

    /// Makes an operation current by a click.
    void select(int row) const;
    /// Selects an operation and opens its name's editor.
    void startRenaming(int row) const;
    /// The open editor of an operation's name, or null.
    QLineEdit *editor() const;
    /// Enters a name into the open editor and commits it.
    void enterName(const QString &name) const;

    QStringList storedOperations() const { return stored(*database).first; }
    QStringList storedLimits() const { return stored(*database).second; }
    /// Operations and limits in a file, as rows.
    static QPair<QStringList, QStringList> stored(const TestDatabase &file);
    /// The operations of the one message sent since the last call, as "id|name"; anything else as its text.
    QStringList takeAnnouncedOperations();

    std::unique_ptr<QWidget> m_host;
    QPointer<GarageSettingsForm> m_form;
    std::unique_ptr<QSignalSpy> m_events;

protected slots:
    void init();
    void cleanup();
};
