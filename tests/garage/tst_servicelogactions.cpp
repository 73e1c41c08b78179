#include "support/garagetest.h"
#include "support/garagewindow.h"
#include "support/json.h"
#include "support/moments.h"

#include <QAction>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeView>

/// The service log: its filters, and what can be done with the record that the user sees.
class TestServiceLogActions : public DatabaseTest
{
    Q_OBJECT
private slots:
    void init();

    void theFiltersNarrowTheLog();
    void theFiltersPersistThroughReloads();
    void aRightClickOffersBothActions();
    void deletingRemovesTheRecordTheUserSees();
    void theQuestionNamesTheRecord_data();
    void theQuestionNamesTheRecord();
    void decliningKeepsTheRecord();
    void aReloadUnderTheQuestionDeletesTheSameRecord();
    void theWindowMayBeDestroyedUnderTheQuestion();
    void doneSendsTheRecordAndWritesNothing();
    void aCancelledDoneSendsNothing();
    void nothingHappensWithoutACurrentRecord();

private:
    static QTreeView *openLog(GarageWindow &window);
    static void trigger(GarageWindow &window, const char *action) { window.find<QAction>(action)->trigger(); }
    static void answer(QMessageBox::StandardButton button);
    QString recordedIds() const
    {
        return database->value("SELECT group_concat(id) FROM (SELECT id FROM maintainance ORDER BY id)")
            .toString();
    }
};

void TestServiceLogActions::init()
{
    DatabaseTest::init();
    database->addCar(1, "12", "Sodi");
    database->addCar(2, "112a", "RX");
    database->addOperation(4, "Масло");
    database->addRecord(1, 4, "2026-03-01T10:00Z", DoneState, "первая");
    database->addRecord(2, 4, "2026-03-02T10:00Z", DoneState, "вторая");
    database->addRecord(1, -1, "2026-03-03T10:00Z", OpenState, "третья");
    database->addRecord(2, 4, "2026-03-04T10:00Z", OpenState, "четвёртая");
    database->exec("UPDATE maintainance SET remote_id=70 WHERE id=2");
}

QTreeView *TestServiceLogActions::openLog(GarageWindow &window)
{
    window.show();
    window.openTab("tabServiceLog");
    window.takeEvents();
    return window.find<QTreeView>("tvServiceLog");
}

void TestServiceLogActions::answer(QMessageBox::StandardButton button)
{
    onNextDialog([button](QDialog &dialog) {
        auto *question = qobject_cast<QMessageBox *>(&dialog);
        QVERIFY(question);
        QCOMPARE(question->windowTitle(), "Подтверждение");
        QCOMPARE(question->text(), "Точно удалить?");
        QCOMPARE(question->standardButtons(), QMessageBox::Yes | QMessageBox::No);
        press(question->button(button));
    });
}

void TestServiceLogActions::theFiltersNarrowTheLog()
{
    GarageWindow window;
    const QTreeView *log = openLog(window);
    const auto comments = [log] {
        QStringList texts;
        for (int row = 0; row < log->model()->rowCount(); ++row) {
            if (log->model()->index(row, 0).data().toInt() != row + 1)
                return QStringList("numbered wrongly");
            texts.append(log->model()->index(row, 6).data().toString());
        }
        return texts;
    };
    const QStringList all {"четвёртая", "третья", "вторая", "первая"};
    QCOMPARE(comments(), all);
    window.choose("cbLogFilterModels", 2);
    QCOMPARE(comments(), QStringList({all.at(0), all.at(2)}));
    window.choose("cbLogFilterOperation", 1);
    QCOMPARE(comments(), QStringList(all.at(0)));
    window.choose("cbLogFilterModels", 0);
    QCOMPARE(comments(), QStringList({all.at(0), all.at(1)}));
    window.choose("cbLogFilterOperation", 3);
    QCOMPARE(comments(), QStringList(all.at(1)));
    window.click("pushButton_2");
    QCOMPARE(comments(), all);
    QTest::keyClicks(window.find<QLineEdit>("leLogFilterNum"), "12A");
    QCOMPARE(comments(), QStringList({all.at(0), all.at(2)}));
    window.click("pushButton_2");
    QCOMPARE(comments(), all);
    QCOMPARE(window.find<QLineEdit>("leLogFilterNum")->text(), QString());
}

void TestServiceLogActions::theFiltersPersistThroughReloads()
{
    GarageWindow window;
    const QTreeView *log = openLog(window);
    QTest::keyClicks(window.find<QLineEdit>("leLogFilterNum"), "112");
    window.choose("cbLogFilterOperation", 1);
    window.reload();
    QCOMPARE(log->model()->rowCount(), 1);
    QCOMPARE(window.find<QComboBox>("cbLogFilterOperation")->currentText(), "Невыполненные");
}

void TestServiceLogActions::aRightClickOffersBothActions()
{
    GarageWindow window;
    QTreeView *log = openLog(window);
    QStringList offered;
    QTimer::singleShot(0, &window, [&offered] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        for (const QAction *action : menu->actions())
            offered.append(action->text());
        menu->close();
    });
    const QPoint cell = log->visualRect(log->model()->index(1, 3)).center();
    QTest::mouseClick(log->viewport(), Qt::RightButton, {}, cell);
    QContextMenuEvent event(QContextMenuEvent::Mouse, cell, log->viewport()->mapToGlobal(cell));
    QApplication::sendEvent(log->viewport(), &event);
    QTRY_COMPARE(offered, QStringList({"Удалить запись", "Выполнено"}));
    QCOMPARE(log->currentIndex().row(), 1);
}

void TestServiceLogActions::deletingRemovesTheRecordTheUserSees()
{
    GarageWindow window;
    QTreeView *log = openLog(window);
    window.choose("cbLogFilterModels", 2); // records 4 and 2 are left
    click(log, log->model()->index(1, 6));
    const int rowsBefore = log->model()->rowCount();
    int rowsWhenAnnounced = -1;
    connect(window.form.get(), &GarageForm::deleteOperation, this,
            [&] { rowsWhenAnnounced = log->model()->rowCount(); });
    answer(QMessageBox::Yes);
    trigger(window, "actionDeleteMaintainanceItem");
    QVERIFY(allDialogsAnswered());
    QCOMPARE(log->model()->rowCount(), 1); // before the loader runs
    QCOMPARE(window.eventNames(), QStringList("deleteOperation"));
    QCOMPARE(rowsWhenAnnounced, rowsBefore - 1);
    QCOMPARE(window.events.first().data, json(R"({"opId": 2, "remoteId": 70})"));
    window.settle();
    QCOMPARE(recordedIds(), "1,3,4");
    QCOMPARE(log->model()->index(0, 6).data().toString(), "четвёртая");
}

void TestServiceLogActions::theQuestionNamesTheRecord_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *name, const QString &change, const QString &shown) {
        QTest::newRow(name) << change << shown;
    };
    const auto shortened = [](const QString &letter) -> QString {
        return letter.repeated(40) + QChar(0x2026);
    };
    row("as it is", "SELECT 1", "RX  112a, Масло, $TIME");
    row("open complaint", "UPDATE maintainance SET operation_id=-1 WHERE id=4", "RX  112a, Жалоба, $TIME");
    row("done without an operation", "UPDATE maintainance SET operation_id=-1, operation_state=1 WHERE id=4",
        "RX  112a, Прочее, $TIME");
    row("deleted car", "DELETE FROM cars WHERE id=2", "Масло, $TIME");
    row("deleted operation", "DELETE FROM service_operations", "RX  112a, $TIME");
    row("no time", "UPDATE maintainance SET operation_time='' WHERE id=4", "RX  112a, Масло");
    row("markup", "UPDATE service_operations SET operation_name='<b>Масло</b>'",
        "RX  112a, <b>Масло</b>, $TIME");
    row("line feeds", "UPDATE service_operations SET operation_name='Масло' || char(10) || 'и фильтр'",
        "RX  112a, Масло и фильтр, $TIME");
    row("long names",
        QString("UPDATE service_operations SET operation_name='%1'").arg(QString("щ").repeated(5000)),
        "RX  112a, " + shortened("щ") + ", $TIME");
}

void TestServiceLogActions::theQuestionNamesTheRecord()
{
    QFETCH(QString, change);
    QFETCH(QString, name);
    database->exec(change);
    GarageWindow window;
    QTreeView *log = openLog(window);
    for (int row = 0; row < log->model()->rowCount(); ++row) {
        if (log->model()->index(row, 6).data() == "четвёртая")
            click(log, log->model()->index(row, 6));
    }
    name.replace("$TIME", log->currentIndex().siblingAtColumn(3).data().toString());
    QString shown;
    onNextDialog([&shown](QDialog &dialog) {
        shown = qobject_cast<QMessageBox *>(&dialog)->informativeText();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    trigger(window, "actionDeleteMaintainanceItem");
    QVERIFY(allDialogsAnswered());
    QCOMPARE(shown, name);
}

void TestServiceLogActions::decliningKeepsTheRecord()
{
    GarageWindow window;
    QTreeView *log = openLog(window);
    log->setCurrentIndex(log->model()->index(0, 0));
    answer(QMessageBox::No);
    trigger(window, "actionDeleteMaintainanceItem");
    onNextDialog([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    trigger(window, "actionDeleteMaintainanceItem");
    QVERIFY(allDialogsAnswered());
    QVERIFY(window.events.isEmpty());
    QCOMPARE(log->model()->rowCount(), 4);
    QCOMPARE(recordedIds(), "1,2,3,4");
}

void TestServiceLogActions::aReloadUnderTheQuestionDeletesTheSameRecord()
{
    GarageWindow window;
    QTreeView *log = openLog(window);
    log->setCurrentIndex(log->model()->index(1, 0)); // record 3
    onNextDialog([&](QDialog &dialog) {
        database->addRecord(1, 4, "2026-03-05T10:00Z", DoneState, "пятая");
        window.reload();
        press(dialog, QDialogButtonBox::Yes);
    });
    trigger(window, "actionDeleteMaintainanceItem");
    window.settle();
    QCOMPARE(recordedIds(), "1,2,4,5");
}

void TestServiceLogActions::theWindowMayBeDestroyedUnderTheQuestion()
{
    GarageWindow window;
    QTreeView *log = openLog(window);
    log->setCurrentIndex(log->model()->index(1, 0));
    onNextDialog([&window](QDialog &) { window.form.reset(); });
    trigger(window, "actionDeleteMaintainanceItem");
    QVERIFY(!window.form);
    QCOMPARE(recordedIds(), "1,2,3,4");
}

void TestServiceLogActions::doneSendsTheRecordAndWritesNothing()
{
    GarageWindow window;
    window.form->setPersonalList({json(R"({"id": 5, "lastName": "Иванов"})")});
    QTreeView *log = openLog(window);
    window.choose("cbLogFilterModels", 1); // records 3 and 1 are left
    log->setCurrentIndex(log->model()->index(1, 0));
    onNextDialog([](QDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), "Сервисное обслуживание - Sodi  12");
        QCOMPARE(child<QComboBox>(dialog, "cbOperation")->currentText(), "Масло");
        auto *time = child<QDateTimeEdit>(dialog, "deOperationDateTime");
        QCOMPARE(time->dateTime(), march(1, 10, 0));
        time->setDateTime(march(8, 22, 15));
        QCOMPARE(child<QPlainTextEdit>(dialog, "teComments")->toPlainText(), "первая");
        child<QComboBox>(dialog, "cbPersonal")->setCurrentIndex(1);
        press(dialog, QDialogButtonBox::Ok);
    });
    trigger(window, "actionDoneOperation");
    QVERIFY(allDialogsAnswered());
    QCOMPARE(window.eventNames(), QStringList("addRemoteOperation"));
    QCOMPARE(window.events.first().data, json(R"({"carId": 1, "opId": 4, "opName": "Масло",
                     "opDoneDateTime": "2026-03-08T22:15Z", "operatorId": 5,
                     "operatorName": "Иванов", "comment": "первая", "localId": 1,
                     "updateFromLocal": true, "opDoneDateTimeWeb": "2026-03-08T22:15"})"));
    QCOMPARE(database->rows("SELECT operation_time FROM maintainance WHERE id=1"),
             QStringList("2026-03-01T10:00Z"));
}

void TestServiceLogActions::aCancelledDoneSendsNothing()
{
    GarageWindow window;
    QTreeView *log = openLog(window);
    log->setCurrentIndex(log->model()->index(0, 0));
    onNextDialog([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    trigger(window, "actionDoneOperation");
    QVERIFY(window.events.isEmpty());
    onNextDialog([&window](QDialog &) { window.form.reset(); });
    trigger(window, "actionDoneOperation");
    QVERIFY(allDialogsAnswered());
    QVERIFY(window.events.isEmpty());
}

void TestServiceLogActions::nothingHappensWithoutACurrentRecord()
{
    GarageWindow window;
    const QTreeView *log = openLog(window);
    QVERIFY(!log->currentIndex().isValid());
    trigger(window, "actionDeleteMaintainanceItem");
    trigger(window, "actionDoneOperation");
    QVERIFY(window.events.isEmpty());
    QVERIFY(!QApplication::activeModalWidget());
}

GARAGE_TEST(TestServiceLogActions)
#include "tst_servicelogactions.moc"
