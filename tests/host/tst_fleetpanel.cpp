#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/userinput.h"
#include "tests/host/hostfixture.h"

#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTableView>

/// The panel of karts and people.
class TestFleetPanel final : public GarageTest
{
    Q_OBJECT

private slots:
    void editedCarsAreStoredAndAnnounced();
    void carsAndPeopleAreAddedAndRemoved();
    void nothingIsRemovedWithoutAConfirmation();
    void aNumberIsNeitherEmptyNorGivenTwice_data();
    void aNumberIsNeitherEmptyNorGivenTwice();
    void f2EditsACell();
    void aReadingProgramDoesNotDelayAnAvailabilityChange();
    void changesThatMeetALockAreShownAndStoredLater();
    void aFileThatCannotBeWrittenIsNamed();

private:
    static bool isAvailable(const HostFixture &fixture, int carId);
    static void requestUnavailable(const HostFixture &fixture, int carId);
};

/// In the list that the plug-in got last.
bool TestFleetPanel::isAvailable(const HostFixture &fixture, int carId)
{
    for (const QJsonValue car : fixture.lastSent("cars_list_changed").value("cars").toArray()) {
        if (car.toObject().value("id").toInt() == carId)
            return car.toObject().value("available_for_runs").toBool();
    }
    return false;
}

/// As the plug-in does when the user moves a car.
void TestFleetPanel::requestUnavailable(const HostFixture &fixture, int carId)
{
    const QJsonObject update {
        {"command", "set_availability"}, {"carsIdsList", QJsonArray {carId}}, {"available", 0}};
    fixture.host->plugin().send("say", {{"event", "update_cars"}, {"data", update}});
}

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
    QTRY_COMPARE(cars(), 25);
    onNextDialog(QDialogButtonBox::Yes);
    fixture.click("hostCarsTableViewRemove");
    QTRY_COMPARE(cars(), 24);
    auto *carsView = fixture.find<QTableView>("hostCarsTableView");
    carsView->selectRow(2);
    onNextDialog(QDialogButtonBox::Yes);
    fixture.click("hostCarsTableViewRemove");
    QTRY_COMPARE(cars(), 23);
    fixture.click("hostCarsTableViewAdd");
    QTRY_COMPARE(cars(), 24);
    QCOMPARE(carsView->model()->index(23, 0).data().toString(), "25"); // 24 is another kart's
    QCOMPARE(carsView->currentIndex().row(), 23);
    fixture.click("hostPeopleTableViewAdd");
    QTRY_COMPARE(people(), 11);
    auto *view = fixture.find<QTableView>("hostPeopleTableView");
    view->selectRow(0);
    onNextDialog(QDialogButtonBox::Yes);
    fixture.click("hostPeopleTableViewRemove");
    QTRY_COMPARE(people(), 10);
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

void TestFleetPanel::nothingIsRemovedWithoutAConfirmation()
{
    const HostFixture fixture = makeHostFixture();
    for (const char *table : {"hostCarsTableView", "hostPeopleTableView"}) {
        auto *view = fixture.find<QTableView>(table);
        const int before = view->model()->rowCount();
        view->selectRow(2);
        QString question;
        onNextDialog([&](QDialog &dialog) {
            question = static_cast<QMessageBox &>(dialog).text();
            press(dialog, QDialogButtonBox::No);
        });
        fixture.click(qPrintable(QLatin1String(table) + "Remove"));
        QVERIFY2(allDialogsAnswered(), table);
        QVERIFY2(question.contains(view->model()->index(2, 0).data().toString()), qPrintable(question));
        QCoreApplication::processEvents();
        QCOMPARE(view->model()->rowCount(), before);
    }
}

void TestFleetPanel::aNumberIsNeitherEmptyNorGivenTwice_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << " "
                           << "needs a number";
    QTest::newRow("another kart's") << " 2"
                                    << "number 2 is";
}

void TestFleetPanel::aNumberIsNeitherEmptyNorGivenTwice()
{
    QFETCH(const QString, number);
    QFETCH(const QString, reason);
    const HostFixture fixture = makeHostFixture();
    QAbstractItemModel *model = fixture.find<QTableView>("hostCarsTableView")->model();
    const auto *notice = fixture.find<QLabel>("writeNoticeLabel");
    model->setData(model->index(0, 0), number);
    QTRY_VERIFY2(notice->text().contains(reason), qPrintable(notice->text()));
    QVERIFY(notice->isVisible());
    QTRY_COMPARE(model->index(0, 0).data().toString(), "1");
    const TestDatabase database(home().databasePath(), false);
    QCOMPARE(database.value("SELECT num FROM cars WHERE id=101").toString(), "1");
    model->setData(model->index(0, 0), "1a");
    QTRY_VERIFY(notice->isHidden());
    QCOMPARE(database.value("SELECT num FROM cars WHERE id=101").toString(), "1a");
}

void TestFleetPanel::f2EditsACell()
{
    const HostFixture fixture = makeHostFixture();
    auto *view = fixture.find<QTableView>("hostCarsTableView");
    fixture.window->tabs().setCurrentIndex(1);
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    view->setFocus();
    view->setCurrentIndex(view->model()->index(0, 0));
    QTest::keyClick(view, Qt::Key_F2);
    QVERIFY(view->viewport()->findChild<QLineEdit *>());
    QCOMPARE(fixture.window->tabs().currentIndex(), 1);
}

void TestFleetPanel::aReadingProgramDoesNotDelayAnAvailabilityChange()
{
    const HostFixture fixture = makeHostFixture();
    const DatabaseLock reader(home().databasePath(), DatabaseLock::Shared, 10000);
    QVERIFY(isAvailable(fixture, 103));
    requestUnavailable(fixture, 103);
    QTRY_VERIFY_WITH_TIMEOUT(!isAvailable(fixture, 103), 3000);
    QVERIFY(reader.isHeld());
}

void TestFleetPanel::changesThatMeetALockAreShownAndStoredLater()
{
    const HostFixture fixture = makeHostFixture();
    const auto *notice = fixture.find<QLabel>("writeNoticeLabel");
    const QAbstractItemModel *cars = fixture.find<QTableView>("hostCarsTableView")->model();
    {
        const DatabaseLock writer(home().databasePath(), DatabaseLock::Immediate, 60000);
        requestUnavailable(fixture, 103);
        QTRY_VERIFY2(notice->text().contains("locked"), qPrintable(notice->text()));
        QVERIFY(notice->isVisible());
        fixture.click("hostCarsTableViewAdd");
        fixture.click("hostCarsTableViewAdd");
        fixture.host->fleet().announceCars();
        QCOMPARE(cars->rowCount(), 24);
        QVERIFY(isAvailable(fixture, 103));
    }
    QTRY_COMPARE(cars->rowCount(), 26);
    QVERIFY(!isAvailable(fixture, 103));
    QCOMPARE(cars->index(24, 0).data().toString(), "25");
    QCOMPARE(cars->index(25, 0).data().toString(), "26");
    QVERIFY(notice->isHidden());
}

void TestFleetPanel::aFileThatCannotBeWrittenIsNamed()
{
    const HostFixture fixture = makeHostFixture();
    const int before = fixture.countSent("cars_list_changed");
    const TestDatabase database(home().databasePath(), false);
    database.exec("DROP TABLE host_cars");
    requestUnavailable(fixture, 103);
    const auto *notice = fixture.find<QLabel>("writeNoticeLabel");
    QTRY_VERIFY2(notice->text().contains("host_cars"), qPrintable(notice->text()));
    QVERIFY(fixture.countSent("cars_list_changed") > before); // what the plug-in shows is what is stored
}

GARAGE_TEST(TestFleetPanel)
#include "tst_fleetpanel.moc"
