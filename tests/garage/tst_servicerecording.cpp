#include "settings/servicedialog.h"
#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/garagewindow.h"
#include "support/moments.h"

#include <QApplication>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeView>

namespace {

const QString everyRecord =
    QStringLiteral("SELECT car_id,operation_id,operation_time,person_id,person_name,comment,"
                   "operation_state,remote_id FROM maintainance ORDER BY id");

template<class Widget> Widget *in(QDialog &dialog, const char *name)
{
    auto *widget = dialog.findChild<Widget *>(QLatin1String(name));
    if (!widget)
        qFatal("The dialog has no %s", name);
    return widget;
}

void press(QDialog &dialog, QDialogButtonBox::StandardButton button)
{
    QTest::mouseClick(in<QDialogButtonBox>(dialog, "buttonBox")->button(button), Qt::LeftButton);
}

void typeDateTime(QDialog &dialog, const QDateTime &dateTime)
{
    in<QDateTimeEdit>(dialog, "deOperationDateTime")->setDateTime(dateTime);
}

void typeComment(QDialog &dialog, const QString &text)
{
    auto *edit = in<QPlainTextEdit>(dialog, "teComments");
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

QJsonArray people()
{
    return {QJsonObject {{QStringLiteral("id"), 5},
                         {QStringLiteral("lastName"), QStringLiteral("Иванов")},
                         {QStringLiteral("firstName"), QStringLiteral("Иван")},
                         {QStringLiteral("midName"), QStringLiteral("Ильич")}}};
}

} // namespace

/// Services and complaints from the click on the table to the row in the file.
class TestServiceRecording : public GarageTest
{
    Q_OBJECT
private slots:
    void aServiceIsStoredAnnouncedAndReloaded();
    void theDialogStartsWithTheClickedOperationAndTheCurrentMinute();
    void acceptingNoOperationStoresOperationMinusOne();
    void aCancelledServiceChangesNothing();
    void anEarlierServiceLeavesTheShownDateUntilTheReload();
    void aLaterServiceShowsAtOnce();
    void theRecordIsInTheFileWhenTheHostHearsOfIt();
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
    void aDialogOutlivesNothing();
    void aLockedDatabaseDelaysTheRecord_data();
    void aLockedDatabaseDelaysTheRecord();
    void aMissingDatabaseLosesTheRecordButNotTheWindow();

private:
    std::unique_ptr<TestDatabase> createSample() const;
    /// Clicks the button that appears on a cell of the car's row.
    static void clickCell(GarageWindow &window, const QString &num, const QString &columnTitle);
};

std::unique_ptr<TestDatabase> TestServiceRecording::createSample() const
{
    auto database = createDatabase();
    database->addCar(1, QStringLiteral("10"), QStringLiteral("Sodi"));
    database->addCar(2, QStringLiteral("9"), QStringLiteral("Sodi"));
    database->addCar(3, QStringLiteral("3"), QStringLiteral("RX"));
    database->addOperation(1, QStringLiteral("Масло"));
    database->addOperation(2, QStringLiteral("Цепь"));
    return database;
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
    const auto database = createSample();
    GarageWindow window;
    window.form->setPersonalList(people());
    window.show();
    window.takeEvents();

    onNextDialog([](QDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Сервисное обслуживание - Sodi  10"));
        typeDateTime(dialog, march(8, 9, 30));
        in<QComboBox>(dialog, "cbPersonal")->setFocus();
        QTest::keyClick(in<QComboBox>(dialog, "cbPersonal"), Qt::Key_Down);
        typeComment(dialog, QStringLiteral("Changed %1 'oil'"));
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, QStringLiteral("10"), QStringLiteral("Масло"));
    QVERIFY(allDialogsAnswered());

    QCOMPARE(window.eventNames(),
             QStringList({QStringLiteral("addRemoteOperation"), QStringLiteral("reloadGarageStats")}));
    QCOMPARE(window.events.first().data,
             QJsonObject({{QStringLiteral("carId"), 1},
                          {QStringLiteral("opId"), 1},
                          {QStringLiteral("opName"), QStringLiteral("Масло")},
                          {QStringLiteral("opTime"), QStringLiteral("2026-03-08 09:30")},
                          {QStringLiteral("pId"), 5},
                          {QStringLiteral("pName"), QStringLiteral("Иванов Иван Ильич")},
                          {QStringLiteral("comment"), QStringLiteral("Changed %1 'oil'")}}));
    QCOMPARE(database->rows(everyRecord),
             QStringList(
                 QStringLiteral("1|1|2026-03-08T09:30:00.000Z|5|Иванов Иван Ильич|Changed %1 'oil'|1|NULL")));
    window.settle();
    QCOMPARE(window.find<QTreeView>("tvServiceLog")->model()->rowCount(), 1);
}

void TestServiceRecording::theDialogStartsWithTheClickedOperationAndTheCurrentMinute()
{
    const auto database = createSample();
    GarageWindow window;
    window.show();
    for (const auto &[column, operation] : {std::pair(QStringLiteral("Цепь"), QStringLiteral("Цепь")),
                                            std::pair(QStringLiteral("#"), QStringLiteral("--"))}) {
        onNextDialog([expected = operation](QDialog &dialog) {
            QCOMPARE(in<QComboBox>(dialog, "cbOperation")->currentText(), expected);
            const QDateTime shown = in<QDateTimeEdit>(dialog, "deOperationDateTime")->dateTime();
            QVERIFY(qAbs(shown.secsTo(QDateTime::currentDateTime())) <= 61);
            QCOMPARE(shown.time().second(), 0);
            QCOMPARE(shown.time().msec(), 0);
            press(dialog, QDialogButtonBox::Cancel);
        });
        clickCell(window, QStringLiteral("9"), column);
        QVERIFY(allDialogsAnswered());
    }
}

void TestServiceRecording::acceptingNoOperationStoresOperationMinusOne()
{
    const auto database = createSample();
    GarageWindow window;
    window.show();
    window.takeEvents();
    onNextDialog([](QDialog &dialog) {
        typeDateTime(dialog, march(8, 9, 30));
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, QStringLiteral("10"), QStringLiteral("#"));
    QCOMPARE(window.events.first().data.value(QLatin1String("opId")).toInt(), -1);
    QCOMPARE(window.events.first().data.value(QLatin1String("opName")).toString(), QString());
    QCOMPARE(database->rows(everyRecord),
             QStringList(QStringLiteral("1|-1|2026-03-08T09:30:00.000Z|-1|||1|NULL")));
    window.settle();
}

void TestServiceRecording::aCancelledServiceChangesNothing()
{
    const auto database = createSample();
    GarageWindow window;
    window.show();
    window.takeEvents();
    onNextDialog([](QDialog &dialog) {
        typeComment(dialog, QStringLiteral("x"));
        press(dialog, QDialogButtonBox::Cancel);
    });
    clickCell(window, QStringLiteral("10"), QStringLiteral("Масло"));
    QVERIFY(window.events.isEmpty());
    QVERIFY(database->rows(everyRecord).isEmpty());
}

void TestServiceRecording::anEarlierServiceLeavesTheShownDateUntilTheReload()
{
    const auto database = createSample();
    database->addRecord(1, 1, QStringLiteral("2026-03-10T09:00:00.000Z"), DoneState);
    GarageWindow window;
    window.show();
    QStringList rows;
    connect(window.form.get(), &GarageForm::reloadGarageStats, &window,
            [&] { rows = GarageWindow::texts(*window.find<QTreeView>("tvMaintainanceTable")->model()); });
    onNextDialog([](QDialog &dialog) {
        typeDateTime(dialog, march(8, 9, 30));
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, QStringLiteral("10"), QStringLiteral("Масло"));
    QCOMPARE(rows.at(2), QStringLiteral("3|Sodi|10|%1|").arg(shown("2026-03-10 09:00")));
    QCOMPARE(database->value(QStringLiteral("SELECT count(*) FROM maintainance")).toInt(), 2);
    window.settle();
}

void TestServiceRecording::aLaterServiceShowsAtOnce()
{
    const auto database = createSample();
    GarageWindow window;
    window.show();
    QStringList rows;
    connect(window.form.get(), &GarageForm::reloadGarageStats, &window,
            [&] { rows = GarageWindow::texts(*window.find<QTreeView>("tvMaintainanceTable")->model()); });
    auto *model = window.form->findChild<QAbstractItemModel *>(QStringLiteral("maintainanceModel"));
    QSignalSpy changes(model, &QAbstractItemModel::dataChanged);
    onNextDialog([](QDialog &dialog) {
        typeDateTime(dialog, march(8, 9, 30));
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, QStringLiteral("10"), QStringLiteral("Масло"));
    QCOMPARE(rows.at(2), QStringLiteral("3|Sodi|10|%1|").arg(shown("2026-03-08 09:30")));
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.first().first().toModelIndex().model(), model);
    window.settle();
}

void TestServiceRecording::theRecordIsInTheFileWhenTheHostHearsOfIt()
{
    const auto database = createSample();
    GarageWindow window;
    window.show();
    int rows = -1;
    connect(window.form.get(), &GarageForm::addRemoteOperation, this,
            [&] { rows = database->value(QStringLiteral("SELECT count(*) FROM maintainance")).toInt(); });
    onNextDialog([](QDialog &dialog) { press(dialog, QDialogButtonBox::Ok); });
    clickCell(window, QStringLiteral("9"), QStringLiteral("Масло"));
    QCOMPARE(rows, 1);
    window.settle();
}

void TestServiceRecording::aComplaintIsStoredOpen()
{
    const auto database = createSample();
    GarageWindow window;
    window.form->setPersonalList(people());
    window.show();
    window.takeEvents();
    onNextDialog([](QDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Задание - RX  3"));
        QCOMPARE(in<QComboBox>(dialog, "cbOperation")->currentText(), QStringLiteral("--"));
        typeDateTime(dialog, march(8, 9, 30));
        typeComment(dialog, QStringLiteral("knocks"));
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, QStringLiteral("3"), QStringLiteral("Номер"));
    QVERIFY(allDialogsAnswered());
    QCOMPARE(window.eventNames(), QStringList(QStringLiteral("reloadGarageStats")));
    QCOMPARE(database->rows(everyRecord),
             QStringList(QStringLiteral("3|-1|2026-03-08T09:30:00.000Z|-1||knocks|0|NULL")));
    window.settle();
    const auto *view = window.find<QTreeView>("tvMaintainanceTable");
    const QModelIndex number = view->model()->index(window.visibleRowOf(QStringLiteral("3")), 2);
    QCOMPARE(number.data(Qt::BackgroundRole).value<QBrush>().color(), QColor(255, 127, 127));
}

void TestServiceRecording::aNewComplaintStartsNowAndMayNameAnOperation()
{
    const auto database = createSample();
    GarageWindow window;
    window.show();
    onNextDialog([](QDialog &dialog) {
        const QDateTime shown = in<QDateTimeEdit>(dialog, "deOperationDateTime")->dateTime();
        QVERIFY(qAbs(shown.secsTo(QDateTime::currentDateTime())) <= 61);
        QCOMPARE(shown.time().second(), 0);
        auto *operation = in<QComboBox>(dialog, "cbOperation");
        QVERIFY(operation->isEnabled());
        operation->setCurrentIndex(operation->findText(QStringLiteral("Масло")));
        press(dialog, QDialogButtonBox::Ok);
    });
    window.form->complainAboutCar({{QStringLiteral("carId"), 3}});
    QCOMPARE(database->rows(QStringLiteral("SELECT operation_id,operation_state FROM maintainance")),
             QStringList(QStringLiteral("1|0")));
    window.settle();
}

void TestServiceRecording::aSecondComplaintAmendsTheFirst()
{
    const auto database = createSample();
    const int id = database->addRecord(3, -1, QStringLiteral("2026-03-07T08:00:00.000Z"), OpenState,
                                       QStringLiteral("Стук"));
    GarageWindow window;
    window.show();
    onNextDialog([](QDialog &dialog) {
        QCOMPARE(in<QPlainTextEdit>(dialog, "teComments")->toPlainText(), QStringLiteral("Стук"));
        QCOMPARE(in<QDateTimeEdit>(dialog, "deOperationDateTime")->dateTime(), march(7, 8, 0));
        typeDateTime(dialog, march(8, 9, 30));
        typeComment(dialog, QStringLiteral("louder"));
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, QStringLiteral("3"), QStringLiteral("Модель"));
    QCOMPARE(
        database->rows(QStringLiteral("SELECT id,operation_time,comment,operation_state FROM maintainance")),
        QStringList(QStringLiteral("%1|2026-03-08T09:30:00.000Z|louder|0").arg(id)));
    window.settle();
}

void TestServiceRecording::aCancelledComplaintChangesNothing()
{
    const auto database = createSample();
    GarageWindow window;
    window.show();
    window.takeEvents();
    for (int round = 0; round < 2; ++round) {
        onNextDialog([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        clickCell(window, QStringLiteral("3"), QStringLiteral("Номер"));
        QVERIFY(allDialogsAnswered());
    }
    QVERIFY(window.events.isEmpty());
    QVERIFY(database->rows(everyRecord).isEmpty());
}

void TestServiceRecording::aComplaintComesFromTheHost_data()
{
    QTest::addColumn<QJsonObject>("data");
    QTest::addColumn<bool>("asks");
    QTest::newRow("a car") << QJsonObject {{QStringLiteral("carId"), 2}} << true;
    QTest::newRow("an unknown car") << QJsonObject {{QStringLiteral("carId"), 99}} << false;
    QTest::newRow("-1") << QJsonObject {{QStringLiteral("carId"), -1}} << false;
    QTest::newRow("no car id") << QJsonObject() << false;
    QTest::newRow("a text") << QJsonObject {{QStringLiteral("carId"), QStringLiteral("2")}} << false;
}

void TestServiceRecording::aComplaintComesFromTheHost()
{
    QFETCH(QJsonObject, data);
    QFETCH(bool, asks);
    const auto database = createSample();
    GarageWindow window;
    window.show();
    if (asks) {
        onNextDialog([](QDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Задание - Sodi  9"));
            press(dialog, QDialogButtonBox::Ok);
        });
    }
    window.form->complainAboutCar(data);
    QVERIFY(allDialogsAnswered());
    QCOMPARE(
        database
            ->value(QStringLiteral("SELECT count(*) FROM maintainance WHERE car_id=2 AND operation_state=0"))
            .toInt(),
        asks ? 1 : 0);
    window.settle();
}

void TestServiceRecording::aSecondRequestRaisesTheOpenDialog()
{
    const auto database = createSample();
    GarageWindow window;
    window.show();
    onNextDialog([&window](QDialog &dialog) {
        QTRY_VERIFY(dialog.isActiveWindow());
        window.form->activateWindow();
        QTRY_VERIFY(!dialog.isActiveWindow());
        window.form->complainAboutCar({{QStringLiteral("carId"), 2}});
        QTRY_VERIFY(dialog.isActiveWindow());
        QCOMPARE(QApplication::activeModalWidget(), &dialog);
        onNextDialog([](QDialog &other) {
            QCOMPARE(other.windowTitle(), QStringLiteral("Задание - RX  3"));
            press(other, QDialogButtonBox::Cancel);
        });
        window.form->complainAboutCar({{QStringLiteral("carId"), 3}});
        press(dialog, QDialogButtonBox::Ok);
    });
    window.form->complainAboutCar({{QStringLiteral("carId"), 2}});
    QVERIFY(allDialogsAnswered());
    QCOMPARE(database->value(QStringLiteral("SELECT group_concat(car_id) FROM maintainance")).toString(),
             QStringLiteral("2"));
    window.settle();
}

void TestServiceRecording::aReloadUnderAnOpenDialogChangesNoOtherCar()
{
    const auto database = createSample();
    GarageWindow window;
    window.show();
    onNextDialog([&](QDialog &dialog) {
        // The table is reordered, shrunk to one other car and loses its columns while the dialog is open.
        database->exec(QStringLiteral("DELETE FROM cars WHERE id=1"));
        database->exec(QStringLiteral("UPDATE cars SET name='AA' WHERE id=2"));
        database->addCar(7, QStringLiteral("1"), QStringLiteral("A"));
        database->exec(QStringLiteral("DELETE FROM service_operations"));
        window.settings->reloadReglamentModel();
        window.reload();
        typeDateTime(dialog, march(8, 9, 30));
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, QStringLiteral("10"), QStringLiteral("Цепь"));
    QCOMPARE(database->rows(everyRecord),
             QStringList(QStringLiteral("1|2|2026-03-08T09:30:00.000Z|-1|||1|NULL")));
    window.settle();

    onNextDialog([&](QDialog &dialog) {
        database->exec(QStringLiteral("DELETE FROM cars"));
        window.reload();
        press(dialog, QDialogButtonBox::Ok);
    });
    window.form->complainAboutCar({{QStringLiteral("carId"), 3}});
    QCOMPARE(
        database
            ->value(QStringLiteral("SELECT count(*) FROM maintainance WHERE car_id=3 AND operation_state=0"))
            .toInt(),
        1);
    window.settle();
}

void TestServiceRecording::aComplaintClosedMeanwhileIsNotReopened()
{
    const auto database = createSample();
    const int id = database->addRecord(3, -1, QStringLiteral("2026-03-07T08:00:00.000Z"), OpenState,
                                       QStringLiteral("Стук"));
    GarageWindow window;
    window.show();
    onNextDialog([&](QDialog &dialog) {
        database->exec(QStringLiteral("UPDATE maintainance SET operation_state=1 WHERE id=?"), {id});
        window.reload();
        typeDateTime(dialog, march(8, 9, 30));
        press(dialog, QDialogButtonBox::Ok);
    });
    window.form->complainAboutCar({{QStringLiteral("carId"), 3}});
    QCOMPARE(
        database->rows(QStringLiteral("SELECT operation_time,operation_state FROM maintainance ORDER BY id")),
        QStringList(
            {QStringLiteral("2026-03-07T08:00:00.000Z|1"), QStringLiteral("2026-03-08T09:30:00.000Z|0")}));
    window.settle();
}

void TestServiceRecording::aComplaintThatCameMeanwhileIsKept()
{
    const auto database = createSample();
    GarageWindow window;
    window.show();
    onNextDialog([&](QDialog &dialog) {
        database->addRecord(3, -1, QStringLiteral("2026-03-07T08:00:00.000Z"), OpenState,
                            QStringLiteral("from another station"));
        window.reload();
        typeComment(dialog, QStringLiteral("mine"));
        press(dialog, QDialogButtonBox::Ok);
    });
    window.form->complainAboutCar({{QStringLiteral("carId"), 3}});
    QCOMPARE(database->rows(QStringLiteral("SELECT comment FROM maintainance ORDER BY id")),
             QStringList({QStringLiteral("from another station"), QStringLiteral("mine")}));
    window.settle();
}

void TestServiceRecording::aDialogOutlivesNothing()
{
    const auto database = createSample();
    for (const bool complaint : {false, true}) {
        GarageWindow window;
        window.show();
        onNextDialog([&window](QDialog &) { window.form.reset(); });
        if (complaint)
            window.form->complainAboutCar({{QStringLiteral("carId"), 3}});
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
    const auto database = createSample();
    GarageWindow window;
    window.show();
    std::unique_ptr<DatabaseLock> lock;
    onNextDialog([&](QDialog &dialog) {
        lock = std::make_unique<DatabaseLock>(home().databasePath(), DatabaseLock::Immediate, 1500);
        press(dialog, QDialogButtonBox::Ok);
    });
    clickCell(window, QStringLiteral("10"), complaint ? QStringLiteral("Номер") : QStringLiteral("Масло"));
    QVERIFY(!lock->isHeld());
    QCOMPARE(database->value(QStringLiteral("SELECT count(*) FROM maintainance")).toInt(), 1);
    window.settle();
}

void TestServiceRecording::aMissingDatabaseLosesTheRecordButNotTheWindow()
{
    const auto database = createSample();
    GarageWindow window;
    window.show();
    database->exec(QStringLiteral("ALTER TABLE maintainance RENAME TO elsewhere"));
    window.takeEvents();
    onNextDialog([](QDialog &dialog) { press(dialog, QDialogButtonBox::Ok); });
    clickCell(window, QStringLiteral("10"), QStringLiteral("Масло"));
    QCOMPARE(window.eventNames(),
             QStringList({QStringLiteral("addRemoteOperation"), QStringLiteral("reloadGarageStats")}));
    window.settle();
    // No transaction was left open: others can write, and so can the window again.
    database->exec(QStringLiteral("ALTER TABLE elsewhere RENAME TO maintainance"));
    onNextDialog([](QDialog &dialog) { press(dialog, QDialogButtonBox::Ok); });
    clickCell(window, QStringLiteral("10"), QStringLiteral("Масло"));
    QCOMPARE(database->value(QStringLiteral("SELECT count(*) FROM maintainance")).toInt(), 1);
    window.settle();
}

GARAGE_TEST(TestServiceRecording)
#include "tst_servicerecording.moc"
