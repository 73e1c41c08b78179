#include "support/garagetest.h"
#include "tests/host/hostfixture.h"

#include <QJsonArray>
#include <QLabel>
#include <QTableView>

/// The panel of karts and people.
class TestFleetPanel final : public GarageTest
{
    Q_OBJECT

private slots:
    void editedCarsAreStoredAndAnnounced();
    void carsAndPeopleAreAddedAndRemoved();
    void aLockedFileKeepsItsCarsAndShowsTheError();
};

void TestFleetPanel::editedCarsAreStoredAndAnnounced()
{
    const HostFixture fixture = makeHostFixture();
    QAbstractItemModel *model = fixture.find<QTableView>("hostCarsTableView")->model();
    model->setData(model->index(0, 0), "77");
    QCoreApplication::processEvents();
    model->setData(model->index(1, 2), Qt::Unchecked, Qt::CheckStateRole);
    QTRY_VERIFY(!fixture.lastSent("cars_list_changed")
                     .value("cars")
                     .toArray()
                     .at(1)
                     .toObject()
                     .value("available_for_runs")
                     .toBool(true));
    const QJsonArray cars = fixture.lastSent("cars_list_changed").value("cars").toArray();
    QCOMPARE(cars.at(0).toObject().value("num").toString(), "77");
    QVERIFY(!cars.at(0).toObject().value("car_guid").toString().isEmpty());
}

void TestFleetPanel::carsAndPeopleAreAddedAndRemoved()
{
    const HostFixture fixture = makeHostFixture();
    const auto cars = [&] { return fixture.lastSent("cars_list_changed").value("cars").toArray().size(); };
    const auto people = [&] {
        return fixture.lastSent("personal_list").value("personalList").toArray().size();
    };
    fixture.click("hostCarsTableViewAdd");
    QCOMPARE(cars(), 25);
    fixture.click("hostCarsTableViewRemove");
    QCOMPARE(cars(), 24);
    auto *carsView = fixture.find<QTableView>("hostCarsTableView");
    carsView->selectRow(2);
    fixture.click("hostCarsTableViewRemove");
    fixture.click("hostCarsTableViewAdd");
    QCOMPARE(carsView->model()->index(23, 0).data().toString(), "25"); // 24 is another kart's
    fixture.click("hostPeopleTableViewAdd");
    QCOMPARE(people(), 11);
    auto *view = fixture.find<QTableView>("hostPeopleTableView");
    view->selectRow(0);
    fixture.click("hostPeopleTableViewRemove");
    QCOMPARE(people(), 10);
    view->model()->setData(view->model()->index(0, 3), "9999");
    QTRY_COMPARE(fixture.lastSent("personal_list")
                     .value("personalList")
                     .toArray()
                     .first()
                     .toObject()
                     .value("serviceCode")
                     .toString(),
                 "9999");
}

void TestFleetPanel::aLockedFileKeepsItsCarsAndShowsTheError()
{
    const HostFixture fixture = makeHostFixture();
    const auto *error = fixture.find<QLabel>("fleetErrorLabel");
    const auto *cars = fixture.find<QTableView>("hostCarsTableView")->model();
    const TestDatabase database(home().databasePath(), false);
    database.exec("BEGIN EXCLUSIVE");
    fixture.click("hostCarsTableViewAdd");
    QVERIFY2(error->text().contains("locked"), qPrintable(error->text()));
    fixture.host->fleet().announceCars();
    QCOMPARE(cars->rowCount(), 24);
    QCOMPARE(fixture.lastSent("cars_list_changed").value("cars").toArray().size(), 24);
    database.exec("COMMIT");
    fixture.click("hostCarsTableViewAdd");
    QCOMPARE(cars->rowCount(), 25);
    QVERIFY(error->isHidden());
}

GARAGE_TEST(TestFleetPanel)
#include "tst_fleetpanel.moc"
