#include "settings/servicedialog.h"
#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/garagewindow.h"
#include "support/json.h"
#include "support/moments.h"

#include <QApplication>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeView>

namespace {

const QString everyRecord = "SELECT car_id,operation_id,operation_time,person_id,person_name,comment,"
                            "operation_state,remote_id FROM maintainance ORDER BY id";

void typeDateTime(const QDialog &dialog, const QDateTime &dateTime)
{
    child<QDateTimeEdit>(dialog, "deOperationDateTime")->setDateTime(dateTime);
}

void typeComment(const QDialog &dialog, const QString &text)
{
    auto *edit = child<QPlainTextEdit>(dialog, "teComments");
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

QJsonArray people()
{
    return {json(R"({"id": 5, "lastName": "Иванов", "firstName": "Иван", "midName": "Ильич"})")};
}

} // namespace

/// Services and complaints from the click on the table to the row in the file.
class TestServiceRecording : public DatabaseTest
{
    Q_OBJECT
private slots:
    void init();

    void aServiceIsStoredAnnouncedAndReloaded();
    void theDialogStartsWithTheClickedOperationAndTheCurrentMoment();
    void acceptingNoOperationStoresOperationMinusOne();
    void aCancelledServiceChangesNothing();
    void anEarlierServiceLeavesTheShownDateUntilTheReload();
    void aLaterServiceShowsAtOnce();
    void theRecordIsStoredBeforeTheHostIsInformed();
    void aComplaintIsStoredOpen();
    void aNewComplaintStartsNowAndMayNameAnOperation();
    void aSecondComplaintAmendsTheFirst();
    void aCancelledComplaintChangesNothing();
    void aComplaintComesFromTheHost_data();
    void aComplaintComesFromTheHost();
    void aSecondRequestRaisesTheOpenDialog();
    void aReloadUnderAnOpenDialogChangesNoOtherCar();
    void aComplaintClosedMeanwhileIsNotReopened();
    void aComplaintThatCameMeanwhileIsKept();
    void aDialogIsDestroyedWithItsWindow();
    void aLockedDatabaseDelaysTheRecord_data();
    void aLockedDatabaseDelaysTheRecord();
    void aMissingDatabaseLosesTheRecordButNotTheWindow();

private:
    /// Clicks the button that appears on a cell of the car's row.
    static void clickCell(GarageWindow &window, const QString &num, const QString &columnTitle);
};

void TestServiceRecording::init()
{
    DatabaseTest::init();
    database->addCar(1, "10", "Sodi");
    database->addCar(2, "9", "Sodi");
    database->addCar(3, "3", "RX");
    database->addOperation(1, "Масло");
    database->addOperation(2, "Цепь");
}

void TestServiceRecording::clickCell(GarageWindow &window, const QString &num, const QString &columnTitle)
{
    auto *view = window.find<QTreeView>("tvMaintainanceTable");
    const QModelIndex cell = view->model()->index(window.visibleRowOf(num), window.columnOf(columnTitle));
    QVERIFY(cell.isValid());
    window.hover(cell);
    for (QPushButton *button : view->viewport()->findChildren<QPushButton *>()) {
        if (button->isVisible()) {
            QCOMPARE(button->pos(), view->visualRect(cell).topLeft());
            QTest::mouseClick(button, Qt::LeftButton);
            return;
        }
    }
    QFAIL("No button on the cell");
}

void TestServiceRecording::aServiceIsStoredAnnouncedAndReloaded()
{
    GarageWindow window;
    window.form->setPersonalList(people());
    window.show();
    window.takeEvents();

    onNextDialog([](QDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), "Сервисное обслуживание - Sodi  10");
        typeDateTime(dialog, march(8, 9, 30));
        child<QComboBox>(dialog, "cbPersonal")->setFocus();
        QTest::keyClick(child<QComboBox>(dialog, "cbPersonal"), Qt::Key_Down);
        typeComment(dialog, "Changed %1 'oil'");
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, "10", "Масло");
    QVERIFY(allDialogsAnswered());

    QCOMPARE(window.eventNames(), QStringList({"addRemoteOperation", "reloadGarageStats"}));
    QCOMPARE(window.events.first().data,
             json(R"({"carId": 1, "opId": 1, "opName": "Масло", "opTime": "2026-03-08 09:30",
                     "pId": 5, "pName": "Иванов Иван Ильич", "comment": "Changed %1 'oil'"})"));
    QCOMPARE(database->rows(everyRecord),
             QStringList("1|1|2026-03-08T09:30:00.000Z|5|Иванов Иван Ильич|Changed %1 'oil'|1|NULL"));
    window.settle();
    QCOMPARE(window.find<QTreeView>("tvServiceLog")->model()->rowCount(), 1);
}

void TestServiceRecording::theDialogStartsWithTheClickedOperationAndTheCurrentMoment()
{
    GarageWindow window;
    window.show();
    for (const auto &[column, operation] : {std::pair("Цепь", "Цепь"), std::pair("#", "--")}) {
        onNextDialog([expected = operation](QDialog &dialog) {
            QCOMPARE(child<QComboBox>(dialog, "cbOperation")->currentText(), expected);
            const QDateTime shown = child<QDateTimeEdit>(dialog, "deOperationDateTime")->dateTime();
            QVERIFY(qAbs(shown.secsTo(QDateTime::currentDateTime())) <= 1);
            press(dialog, QDialogButtonBox::Cancel);
        });
        clickCell(window, "9", column);
        QVERIFY(allDialogsAnswered());
    }
}

void TestServiceRecording::acceptingNoOperationStoresOperationMinusOne()
{
    GarageWindow window;
    window.show();
    window.takeEvents();
    onNextDialog([](QDialog &dialog) {
        typeDateTime(dialog, march(8, 9, 30));
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, "10", "#");
    QCOMPARE(window.events.first().data.value("opId").toInt(), -1);
    QCOMPARE(window.events.first().data.value("opName").toString(), QString());
    QCOMPARE(database->rows(everyRecord), QStringList("1|-1|2026-03-08T09:30:00.000Z|-1|||1|NULL"));
    window.settle();
}

void TestServiceRecording::aCancelledServiceChangesNothing()
{
    GarageWindow window;
    window.show();
    window.takeEvents();
    onNextDialog([](QDialog &dialog) {
        typeComment(dialog, "x");
        press(dialog, QDialogButtonBox::Cancel);
    });
    clickCell(window, "10", "Масло");
    QVERIFY(window.events.isEmpty());
    QVERIFY(database->rows(everyRecord).isEmpty());
}

void TestServiceRecording::anEarlierServiceLeavesTheShownDateUntilTheReload()
{
    database->addRecord(1, 1, "2026-03-10T09:00:00.000Z", DoneState);
    GarageWindow window;
    window.show();
    QStringList rows;
    connect(window.form.get(), &GarageForm::reloadGarageStats, &window,
            [&] { rows = rowTexts(*window.find<QTreeView>("tvMaintainanceTable")->model()); });
    onNextDialog([](QDialog &dialog) {
        typeDateTime(dialog, march(8, 9, 30));
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, "10", "Масло");
    QCOMPARE(rows.at(2), QString("3|Sodi|10|%1|").arg(shown("2026-03-10 09:00")));
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 2);
    window.settle();
}

void TestServiceRecording::aLaterServiceShowsAtOnce()
{
    GarageWindow window;
    window.show();
    QStringList rows;
    connect(window.form.get(), &GarageForm::reloadGarageStats, &window,
            [&] { rows = rowTexts(*window.find<QTreeView>("tvMaintainanceTable")->model()); });
    auto *model = window.form->findChild<QAbstractItemModel *>("maintainanceModel");
    QSignalSpy changes(model, &QAbstractItemModel::dataChanged);
    onNextDialog([](QDialog &dialog) {
        typeDateTime(dialog, march(8, 9, 30));
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, "10", "Масло");
    QCOMPARE(rows.at(2), QString("3|Sodi|10|%1|").arg(shown("2026-03-08 09:30")));
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.first().first().toModelIndex().model(), model);
    window.settle();
}

void TestServiceRecording::theRecordIsStoredBeforeTheHostIsInformed()
{
    GarageWindow window;
    window.show();
    int rows = -1;
    connect(window.form.get(), &GarageForm::addRemoteOperation, this,
            [&] { rows = database->value("SELECT count(*) FROM maintainance").toInt(); });
    onNextDialog(QDialogButtonBox::Ok);
    clickCell(window, "9", "Масло");
    QCOMPARE(rows, 1);
    window.settle();
}

void TestServiceRecording::aComplaintIsStoredOpen()
{
    GarageWindow window;
    window.form->setPersonalList(people());
    window.show();
    window.takeEvents();
    onNextDialog([](QDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), "Задание - RX  3");
        QCOMPARE(child<QComboBox>(dialog, "cbOperation")->currentText(), "--");
        typeDateTime(dialog, march(8, 9, 30));
        typeComment(dialog, "knocks");
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, "3", "Номер");
    QVERIFY(allDialogsAnswered());
    QCOMPARE(window.eventNames(), QStringList("reloadGarageStats"));
    QCOMPARE(database->rows(everyRecord), QStringList("3|-1|2026-03-08T09:30:00.000Z|-1||knocks|0|NULL"));
    window.settle();
    const auto *view = window.find<QTreeView>("tvMaintainanceTable");
    const QModelIndex number = view->model()->index(window.visibleRowOf("3"), 2);
    QCOMPARE(number.data(Qt::BackgroundRole).value<QBrush>().color(), QColor(255, 127, 127));
}

void TestServiceRecording::aNewComplaintStartsNowAndMayNameAnOperation()
{
    GarageWindow window;
    window.show();
    onNextDialog([](QDialog &dialog) {
        const QDateTime shown = child<QDateTimeEdit>(dialog, "deOperationDateTime")->dateTime();
        QVERIFY(qAbs(shown.secsTo(QDateTime::currentDateTime())) <= 1);
        auto *operation = child<QComboBox>(dialog, "cbOperation");
        QVERIFY(operation->isEnabled());
        operation->setCurrentIndex(operation->findText("Масло"));
        press(dialog, QDialogButtonBox::Ok);
    });
    window.form->complainAboutCar({{"carId", 3}});
    QCOMPARE(database->rows("SELECT operation_id,operation_state FROM maintainance"), QStringList("1|0"));
    window.settle();
}

void TestServiceRecording::aSecondComplaintAmendsTheFirst()
{
    const int id = database->addRecord(3, -1, "2026-03-07T08:00:00.000Z", OpenState, "Стук");
    GarageWindow window;
    window.show();
    onNextDialog([](QDialog &dialog) {
        QCOMPARE(child<QPlainTextEdit>(dialog, "teComments")->toPlainText(), "Стук");
        QCOMPARE(child<QDateTimeEdit>(dialog, "deOperationDateTime")->dateTime(), march(7, 8, 0));
        typeDateTime(dialog, march(8, 9, 30));
        typeComment(dialog, "louder");
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, "3", "Модель");
    QCOMPARE(database->rows("SELECT id,operation_time,comment,operation_state FROM maintainance"),
             QStringList(QString("%1|2026-03-08T09:30:00.000Z|louder|0").arg(id)));
    window.settle();
}

void TestServiceRecording::aCancelledComplaintChangesNothing()
{
    GarageWindow window;
    window.show();
    window.takeEvents();
    for (int round = 0; round < 2; ++round) {
        onNextDialog([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        clickCell(window, "3", "Номер");
        QVERIFY(allDialogsAnswered());
    }
    QVERIFY(window.events.isEmpty());
    QVERIFY(database->rows(everyRecord).isEmpty());
}

void TestServiceRecording::aComplaintComesFromTheHost_data()
{
    QTest::addColumn<QJsonObject>("data");
    QTest::addColumn<bool>("asks");
    QTest::newRow("a car") << json(R"({"carId": 2})") << true;
    QTest::newRow("an unknown car") << json(R"({"carId": 99})") << false;
    QTest::newRow("-1") << json(R"({"carId": -1})") << false;
    QTest::newRow("no car id") << QJsonObject() << false;
    QTest::newRow("a text") << json(R"({"carId": "2"})") << false;
}

void TestServiceRecording::aComplaintComesFromTheHost()
{
    QFETCH(QJsonObject, data);
    QFETCH(bool, asks);
    GarageWindow window;
    window.show();
    if (asks) {
        onNextDialog([](QDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), "Задание - Sodi  9");
            press(dialog, QDialogButtonBox::Ok);
        });
    }
    window.form->complainAboutCar(data);
    QVERIFY(allDialogsAnswered());
    QCOMPARE(
        database->value("SELECT count(*) FROM maintainance WHERE car_id=2 AND operation_state=0").toInt(),
        asks ? 1 : 0);
    window.settle();
}

void TestServiceRecording::aSecondRequestRaisesTheOpenDialog()
{
    GarageWindow window;
    window.show();
    onNextDialog([&window](QDialog &dialog) {
        QTRY_VERIFY(dialog.isActiveWindow());
        window.form->activateWindow();
        QTRY_VERIFY(!dialog.isActiveWindow());
        window.form->complainAboutCar({{"carId", 2}});
        QTRY_VERIFY(dialog.isActiveWindow());
        QCOMPARE(QApplication::activeModalWidget(), &dialog);
        onNextDialog([](QDialog &other) {
            QCOMPARE(other.windowTitle(), "Задание - RX  3");
            press(other, QDialogButtonBox::Cancel);
        });
        window.form->complainAboutCar({{"carId", 3}});
        press(dialog, QDialogButtonBox::Ok);
    });
    window.form->complainAboutCar({{"carId", 2}});
    QVERIFY(allDialogsAnswered());
    QCOMPARE(database->value("SELECT group_concat(car_id) FROM maintainance").toString(), "2");
    window.settle();
}

void TestServiceRecording::aReloadUnderAnOpenDialogChangesNoOtherCar()
{
    GarageWindow window;
    window.show();
    onNextDialog([&](QDialog &dialog) {
        // The table is reordered, shrunk to one other car and loses its columns while the dialog is open.
        database->exec("DELETE FROM cars WHERE id=1");
        database->exec("UPDATE cars SET name='AA' WHERE id=2");
        database->addCar(7, "1", "A");
        database->exec("DELETE FROM service_operations");
        window.settings->reloadReglamentModel();
        window.reload();
        typeDateTime(dialog, march(8, 9, 30));
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, "10", "Цепь");
    QCOMPARE(database->rows(everyRecord), QStringList("1|2|2026-03-08T09:30:00.000Z|-1|||1|NULL"));
    window.settle();

    onNextDialog([&](QDialog &dialog) {
        database->exec("DELETE FROM cars");
        window.reload();
        press(dialog, QDialogButtonBox::Ok);
    });
    window.form->complainAboutCar({{"carId", 3}});
    QCOMPARE(
        database->value("SELECT count(*) FROM maintainance WHERE car_id=3 AND operation_state=0").toInt(), 1);
    window.settle();
}

void TestServiceRecording::aComplaintClosedMeanwhileIsNotReopened()
{
    const int id = database->addRecord(3, -1, "2026-03-07T08:00:00.000Z", OpenState, "Стук");
    GarageWindow window;
    window.show();
    onNextDialog([&](QDialog &dialog) {
        database->exec("UPDATE maintainance SET operation_state=1 WHERE id=?", {id});
        window.reload();
        typeDateTime(dialog, march(8, 9, 30));
        press(dialog, QDialogButtonBox::Ok);
    });
    window.form->complainAboutCar({{"carId", 3}});
    QCOMPARE(database->rows("SELECT operation_time,operation_state FROM maintainance ORDER BY id"),
             QStringList({"2026-03-07T08:00:00.000Z|1", "2026-03-08T09:30:00.000Z|0"}));
    window.settle();
}

void TestServiceRecording::aComplaintThatCameMeanwhileIsKept()
{
    GarageWindow window;
    window.show();
    onNextDialog([&](QDialog &dialog) {
        database->addRecord(3, -1, "2026-03-07T08:00:00.000Z", OpenState, "from another station");
        window.reload();
        typeComment(dialog, "mine");
        press(dialog, QDialogButtonBox::Ok);
    });
    window.form->complainAboutCar({{"carId", 3}});
    QCOMPARE(database->rows("SELECT comment FROM maintainance ORDER BY id"),
             QStringList({"from another station", "mine"}));
    window.settle();
}

void TestServiceRecording::aDialogIsDestroyedWithItsWindow()
{
    for (const bool complaint : {false, true}) {
        GarageWindow window;
        window.show();
        onNextDialog([&window](QDialog &) { window.form.reset(); });
        if (complaint)
            window.form->complainAboutCar({{"carId", 3}});
        else
            QMetaObject::invokeMethod(
                window.form.get(), "serviceClicked",
                Q_ARG(QModelIndex, window.find<QTreeView>("tvMaintainanceTable")->model()->index(0, 3)));
        QVERIFY(allDialogsAnswered());
        QVERIFY(!window.form);
    }
    QVERIFY(database->rows(everyRecord).isEmpty());
}

void TestServiceRecording::aLockedDatabaseDelaysTheRecord_data()
{
    QTest::addColumn<bool>("complaint");
    QTest::newRow("service") << false;
    QTest::newRow("complaint") << true;
}

void TestServiceRecording::aLockedDatabaseDelaysTheRecord()
{
    QFETCH(bool, complaint);
    GarageWindow window;
    window.show();
    std::unique_ptr<DatabaseLock> lock;
    onNextDialog([&](QDialog &dialog) {
        lock = std::make_unique<DatabaseLock>(home().databasePath(), DatabaseLock::Immediate, 1500);
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, "10", complaint ? "Номер" : "Масло");
    QVERIFY(!lock->isHeld());
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 1);
    window.settle();
}

void TestServiceRecording::aMissingDatabaseLosesTheRecordButNotTheWindow()
{
    GarageWindow window;
    window.show();
    database->exec("ALTER TABLE maintainance RENAME TO elsewhere");
    window.takeEvents();
    onNextDialog(QDialogButtonBox::Ok);
    clickCell(window, "10", "Масло");
    QCOMPARE(window.eventNames(), QStringList({"addRemoteOperation", "reloadGarageStats"}));
    window.settle();
    // No transaction was left open: others can write, and so can the window again.
    database->exec("ALTER TABLE elsewhere RENAME TO maintainance");
    onNextDialog(QDialogButtonBox::Ok);
    clickCell(window, "10", "Масло");
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 1);
    window.settle();
}

GARAGE_TEST(TestServiceRecording)
#include "tst_servicerecording.moc"
