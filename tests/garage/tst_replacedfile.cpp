#include "support/garagetest.h"
#include "support/garagewindow.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QTreeView>

#include <cstdio>

/// Another file takes the place of the database while the window asks: ids of the old file are not used.
class TestReplacedFile : public DatabaseTest
{
    Q_OBJECT
private slots:
    void idsOfTheOldFileAreNotUsed_data();
    void idsOfTheOldFileAreNotUsed();
};

namespace {

const QString selectRecords =
    "SELECT id,car_id,operation_id,operation_state,comment FROM maintainance ORDER BY id";

void act(const QString &action, GarageWindow &window)
{
    auto *view = window.find<QTreeView>("tvMaintainanceTable");
    auto *log = window.find<QTreeView>("tvServiceLog");
    const QModelIndex cell = view->model()->index(0, 3);
    if (action == "service") {
        QMetaObject::invokeMethod(window.form.get(), "serviceClicked", Q_ARG(QModelIndex, cell));
    } else if (action == "complaint") {
        window.form->complainAboutCar({{"carId", 1}});
    } else {
        window.openTab("tabServiceLog");
        log->setCurrentIndex(log->model()->index(0, 0));
        const bool isDeletion = action == "delete";
        window.find<QAction>(isDeletion ? "actionDeleteMaintainanceItem" : "actionDoneOperation")->trigger();
    }
}

} // namespace

void TestReplacedFile::idsOfTheOldFileAreNotUsed_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<bool>("reloadMeanwhile");
    for (const char *action : {"service", "complaint", "delete", "done"}) {
        for (const bool reloads : {false, true})
            QTest::addRow("%s%s", action, reloads ? ", reloaded meanwhile" : "") << action << reloads;
    }
}

void TestReplacedFile::idsOfTheOldFileAreNotUsed()
{
    QFETCH(QString, action);
    QFETCH(bool, reloadMeanwhile);
    database->addCar(1, "7", "Sodi");
    database->addOperation(1, "Oil");
    database->addRecord(1, -1, "2026-03-01T10:00Z", OpenState, "old");

    const QString path = home().databasePath();
    const TestDatabase other(path + ".other");
    other.addCar(1, "3", "RX");
    other.addOperation(1, "Chain");
    other.addRecord(1, -1, "2026-03-02T10:00Z", OpenState, "new");
    const QStringList untouched = other.rows(selectRecords);

    GarageWindow window;
    window.show();
    window.takeEvents();
    onNextDialog([&](QDialog &dialog) {
        QCOMPARE(std::rename(qPrintable(path + ".other"), qPrintable(path)), 0);
        if (reloadMeanwhile)
            window.reload();
        press(dialog, action == "delete" ? QDialogButtonBox::Yes : QDialogButtonBox::Ok);
    });
    act(action, window);
    QVERIFY(allDialogsAnswered());
    window.settle();

    QCOMPARE(other.rows(selectRecords), untouched);
    for (const QString &event : window.eventNames())
        QCOMPARE(event, "reloadGarageStats");
    const auto *view = window.find<QTreeView>("tvMaintainanceTable");
    QCOMPARE(view->model()->index(0, 2).data().toString(), "3");

    // What is chosen from now on is stored.
    onNextDialog(QDialogButtonBox::Ok);
    act("service", window);
    window.settle();
    QCOMPARE(other.rows(selectRecords).size(), untouched.size() + 1);
}

GARAGE_TEST(TestReplacedFile)
#include "tst_replacedfile.moc"
