#include "support/garagewindow.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QTabWidget>
#include <QTreeView>
#include <QtTest>

GarageWindow::GarageWindow()
    : settings(std::make_unique<GarageSettingsForm>()), form(std::make_unique<GarageForm>())
{
    form->setReglament(settings->reglamentModel());
    const auto note = [this](const QString &name, const QJsonObject &data = {}) {
        events.append({name, data});
    };
    connect(form.get(), &GarageForm::closeGarage, this, [=] { note("closeGarage"); });
    connect(form.get(), &GarageForm::reloadGarageStats, this, [=] {
        ++requested;
        note("reloadGarageStats");
    });
    connect(form.get(), &GarageForm::updateServiceTable, this,
            [=](const QJsonArray &opsList, const QJsonArray &personalList) {
                note("updateServiceTable", {{"opsList", opsList}, {"personalList", personalList}});
            });
    connect(form.get(), &GarageForm::addRemoteOperation, this,
            [=](const QJsonObject &operation) { note("addRemoteOperation", operation); });
    connect(form.get(), &GarageForm::deleteOperation, this, [=](int opId, int remoteId) {
        ++requested;
        note("deleteOperation", {{"opId", opId}, {"remoteId", remoteId}});
    });
    connect(form.get(), &GarageForm::pluginSignal, this, note);
    connect(&form->updater(), &GarageUpdater::garageStatsUpdated, this, [this] { ++delivered; });
    connect(form.get(), &GarageForm::updateServiceTable, this, [this] { ++requested; });
}

void GarageWindow::show()
{
    form->show();
    QVERIFY(QTest::qWaitForWindowExposed(form.get()));
    settle();
}

void GarageWindow::reload()
{
    form->requestReload();
    settle();
}

void GarageWindow::settle()
{
    QVERIFY(QTest::qWaitFor([this] { return delivered >= requested; }, 60000));
}

void GarageWindow::click(const char *button) const
{
    press(find<QAbstractButton>(button));
}

void GarageWindow::openTab(const char *page) const
{
    auto *tabs = find<QTabWidget>("tabWidget");
    const int index = tabs->indexOf(find<QWidget>(page));
    QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, tabs->tabBar()->tabRect(index).center());
    QCOMPARE(tabs->currentIndex(), index);
}

void GarageWindow::choose(const char *comboName, int index) const
{
    auto *combo = find<QComboBox>(comboName);
    combo->setFocus();
    while (combo->currentIndex() != index)
        QTest::keyClick(combo, combo->currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
}

void GarageWindow::hover(const QModelIndex &cell) const
{
    auto *view = find<QTreeView>("tvMaintainanceTable");
    view->scrollTo(cell);
    const QRect rect = view->visualRect(cell);
    QTest::mouseMove(view->viewport(), rect.center() + QPoint(1, 0));
    QTest::mouseMove(view->viewport(), rect.center());
}

int GarageWindow::visibleRowOf(const QString &num) const
{
    const QAbstractItemModel *model = find<QTreeView>("tvMaintainanceTable")->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        if (model->index(row, 2).data().toString() == num)
            return row;
    }
    return -1;
}

int GarageWindow::columnOf(const QString &title) const
{
    const QAbstractItemModel *model = find<QTreeView>("tvMaintainanceTable")->model();
    for (int column = 0; column < model->columnCount(); ++column) {
        if (model->headerData(column, Qt::Horizontal).toString() == title)
            return column;
    }
    return -1;
}

QStringList GarageWindow::eventNames() const
{
    QStringList names;
    for (const Event &event : events)
        names.append(event.name);
    return names;
}

QVector<GarageWindow::Event> GarageWindow::takeEvents()
{
    QVector<Event> taken;
    taken.swap(events);
    return taken;
}
