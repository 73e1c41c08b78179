#include "host/fleet/fleetpanel.h"

#include "host/fleet/fleetcontroller.h"
#include "host/widgets/tableviews.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

namespace {

enum CarColumn { NumberColumn, ModelColumn, AvailableColumn };
enum PersonColumn { LastNameColumn, FirstNameColumn, MidNameColumn, ServiceCodeColumn };

int idAt(const QStandardItemModel &model, int row)
{
    return row < 0 ? -1 : model.item(row, 0)->data().toInt();
}

QList<QStandardItem *> makeRow(int id, const QStringList &texts)
{
    QList<QStandardItem *> row = TableViews::makeRow(texts);
    row.first()->setData(id);
    return row;
}

} // namespace

FleetPanel::FleetPanel(FleetController &fleet, QWidget *parent)
    : QWidget(parent)
    , m_fleet(fleet)
    , m_cars(new QStandardItemModel(this))
    , m_people(new QStandardItemModel(this))
    , m_carsView(TableViews::make(m_cars, "hostCarsTableView"))
    , m_peopleView(TableViews::make(m_people, "hostPeopleTableView"))
{
    m_cars->setHorizontalHeaderLabels({tr("Number"), tr("Model"), tr("Available")});
    m_people->setHorizontalHeaderLabels(
        {tr("Last name"), tr("First name"), tr("Middle name"), tr("Service code")});
    TableViews::setColumnWidths(*m_carsView, {tr("Number"), QStringLiteral("Молния, вторая серия")});
    TableViews::setColumnWidths(
        *m_peopleView,
        {QStringLiteral("Кузнецов+"), QStringLiteral("Алексей+"), QStringLiteral("Дмитриевич+")});
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(makeTable(tr("Karts"), m_carsView, &FleetPanel::addCar, &FleetPanel::removeCar), 1);
    layout->addWidget(
        makeTable(tr("People"), m_peopleView, &FleetPanel::addPerson, &FleetPanel::removePerson), 1);

    connect(&m_fleet, &FleetController::carsAnnounced, this, &FleetPanel::refillCars);
    connect(&m_fleet, &FleetController::peopleAnnounced, this, &FleetPanel::refillPeople);
    connect(&m_fleet, &FleetController::carAdded, this, [this] {
        m_carsView->scrollToBottom();
        m_carsView->selectRow(m_cars->rowCount() - 1);
    });
    connect(m_cars, &QStandardItemModel::itemChanged, this, &FleetPanel::storeCar);
    connect(m_people, &QStandardItemModel::itemChanged, this, &FleetPanel::storePerson);
    refillCars();
    refillPeople();
}

QWidget *FleetPanel::makeTable(const QString &title, QTableView *view, void (FleetPanel::*add)(),
                               void (FleetPanel::*remove)())
{
    auto *box = new QGroupBox(title);
    auto *layout = new QVBoxLayout(box);
    auto *buttons = new QHBoxLayout;
    auto *addButton = new QPushButton(tr("Add"));
    auto *removeButton = new QPushButton(tr("Remove"));
    addButton->setObjectName(view->objectName() + QLatin1String("Add"));
    removeButton->setObjectName(view->objectName() + QLatin1String("Remove"));
    buttons->addWidget(addButton);
    buttons->addWidget(removeButton);
    buttons->addStretch();
    layout->addWidget(view, 1);
    layout->addLayout(buttons);
    connect(addButton, &QPushButton::clicked, this, add);
    connect(removeButton, &QPushButton::clicked, this, remove);
    TableViews::enableWithSelection(*removeButton, *view);
    return box;
}

void FleetPanel::refillCars()
{
    const QScopedValueRollback<bool> refilling(m_refilling, true);
    const int scrolled = m_carsView->verticalScrollBar()->value();
    m_cars->removeRows(0, m_cars->rowCount());
    for (const HostCar &car : m_fleet.cars().list()) {
        QList<QStandardItem *> row = makeRow(car.id, {car.number, car.model, QString()});
        row.at(AvailableColumn)->setCheckable(true);
        row.at(AvailableColumn)->setEditable(false);
        row.at(AvailableColumn)->setCheckState(car.available ? Qt::Checked : Qt::Unchecked);
        m_cars->appendRow(row);
    }
    m_carsView->verticalScrollBar()->setValue(scrolled);
}

void FleetPanel::refillPeople()
{
    const QScopedValueRollback<bool> refilling(m_refilling, true);
    m_people->removeRows(0, m_people->rowCount());
    for (const HostPerson &person : m_fleet.people().list())
        m_people->appendRow(
            makeRow(person.id, {person.lastName, person.firstName, person.midName, person.serviceCode}));
}

void FleetPanel::storeCar(QStandardItem *changed)
{
    if (m_refilling)
        return;
    const int row = changed->row();
    HostCar car;
    car.id = idAt(*m_cars, row);
    car.number = m_cars->item(row, NumberColumn)->text().trimmed();
    car.model = m_cars->item(row, ModelColumn)->text().trimmed();
    car.available = m_cars->item(row, AvailableColumn)->checkState() == Qt::Checked;
    m_fleet.storeCar(car);
}

void FleetPanel::storePerson(QStandardItem *changed)
{
    if (m_refilling)
        return;
    const int row = changed->row();
    const auto text = [&](int column) { return m_people->item(row, column)->text(); };
    m_fleet.storePerson(HostPerson {idAt(*m_people, row), text(LastNameColumn), text(FirstNameColumn),
                                    text(MidNameColumn), text(ServiceCodeColumn)});
}

void FleetPanel::addCar()
{
    const int lastRow = m_cars->rowCount() - 1;
    m_fleet.addCar(lastRow >= 0 ? m_cars->item(lastRow, ModelColumn)->text() : tr("New model"));
}

void FleetPanel::removeCar()
{
    const int row = m_carsView->currentIndex().row();
    const int id = idAt(*m_cars, row);
    if (id < 0)
        return;
    const auto text = [&](int column) { return m_cars->item(row, column)->text(); };
    if (confirmRemoval(tr("Remove kart %1 (%2)? Its laps and service records stay in the database.")
                           .arg(text(NumberColumn), text(ModelColumn))))
        m_fleet.removeCar(id);
}

void FleetPanel::addPerson()
{
    m_fleet.storePerson(HostPerson {-1, tr("New"), tr("Employee"), QString(), QString()});
}

void FleetPanel::removePerson()
{
    const int row = m_peopleView->currentIndex().row();
    const int id = idAt(*m_people, row);
    if (id < 0)
        return;
    const auto text = [&](int column) { return m_people->item(row, column)->text(); };
    if (confirmRemoval(tr("Remove %1 %2? The service records stay in the database.")
                           .arg(text(LastNameColumn), text(FirstNameColumn))))
        m_fleet.removePerson(id);
}

bool FleetPanel::confirmRemoval(const QString &question)
{
    return QMessageBox::question(this, tr("Confirmation"), question, QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No)
        == QMessageBox::Yes;
}
