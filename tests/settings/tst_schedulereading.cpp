#include "settings/garagesettingsform.h"
#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/userinput.h"

#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTimer>
#include <QTreeView>

/// The schedule when the file is busy, and when models cannot be told apart by their text.
class TestScheduleReading : public DatabaseTest
{
    Q_OBJECT
private slots:
    void aReadThatMetABusyFileIsRepeatedWithoutBlocking();
    void limitsThatWereNotReadOverwriteNothing();
    void editingOneOfTwoNamelessModelsLeavesTheOther_data();
    void editingOneOfTwoNamelessModelsLeavesTheOther();

private:
    static QStringList limits(const GarageSettingsForm &form)
    {
        return rowTexts(*child<QTreeView>(form, "tvServiceReglament")->model());
    }
    static void askForLimits(GarageSettingsForm &form, int row)
    {
        const auto *view = child<QTreeView>(form, "tvServiceReglament");
        QMetaObject::invokeMethod(&form, "on_tvServiceReglament_doubleClicked",
                                  Q_ARG(QModelIndex, view->model()->index(row, 2)));
    }
};

namespace {

constexpr int longerThanTheDriverWaitsMs = 6000;
const QString selectLimits = "SELECT * FROM service_reglament";

} // namespace

void TestScheduleReading::aReadThatMetABusyFileIsRepeatedWithoutBlocking()
{
    database->addCar(1, "1", "SODI");
    database->addOperation(2, "Oil");
    database->addLimit("SODI", 2, 5400, 10, 0);
    GarageSettingsForm form;
    const QStringList whole("1|SODI|1.5 ч. 10 заезд. 0 кр.");
    QCOMPARE(limits(form), whole);

    const DatabaseLock lock(home().databasePath(), DatabaseLock::Exclusive,
                            longerThanTheDriverWaitsMs + 2000);
    form.reloadReglamentModel();
    QVERIFY(lock.isHeld());
    QCOMPARE(limits(form), QStringList());

    QElapsedTimer sinceLastTurn;
    qint64 longestTurn = 0;
    QTimer turns;
    connect(&turns, &QTimer::timeout, this,
            [&] { longestTurn = qMax(longestTurn, sinceLastTurn.restart()); });
    sinceLastTurn.start();
    turns.start(10);
    QTRY_COMPARE_WITH_TIMEOUT(limits(form), whole, 20000);
    QVERIFY2(longestTurn < 2500, qPrintable(QString::number(longestTurn)));
}

void TestScheduleReading::limitsThatWereNotReadOverwriteNothing()
{
    database->addCar(1, "1", "SODI");
    database->addOperation(2, "Oil");
    database->addLimit("SODI", 2, 5400, 10, 0);
    GarageSettingsForm form;
    form.show();
    onNextDialog([&](QDialog &dialog) {
        {
            const DatabaseLock lock(home().databasePath(), DatabaseLock::Exclusive,
                                    longerThanTheDriverWaitsMs);
            form.reloadReglamentModel();
        }
        child<QLineEdit>(dialog, "leRunsCount")->setText("99");
        press(dialog, QDialogButtonBox::Ok);
    });
    askForLimits(form, 0);
    QCOMPARE(database->rows(selectLimits), QStringList("SODI|2|5400|10|0"));
    QTRY_COMPARE(limits(form), QStringList("1|SODI|1.5 ч. 10 заезд. 0 кр."));
}

void TestScheduleReading::editingOneOfTwoNamelessModelsLeavesTheOther_data()
{
    QTest::addColumn<QString>("cars");
    QTest::newRow("NULL first") << "(1,'1',NULL),(2,'2','')";
    QTest::newRow("empty first") << "(1,'1',''),(2,'2',NULL)";
}

void TestScheduleReading::editingOneOfTwoNamelessModelsLeavesTheOther()
{
    QFETCH(QString, cars);
    database->exec("INSERT INTO cars (id,num,name) VALUES " + cars);
    database->addOperation(2, "Oil");
    GarageSettingsForm form;
    form.show();
    for (int edit = 0; edit < 2; ++edit) {
        onNextDialog([edit](QDialog &dialog) {
            child<QLineEdit>(dialog, "leRunsCount")->setText(QString::number(7 + edit));
            press(dialog, QDialogButtonBox::Ok);
        });
        askForLimits(form, 1 - edit);
        const QStringList expected {edit == 0 ? "1||" : "1||0.0 ч. 8 заезд. 0 кр.",
                                    "2||0.0 ч. 7 заезд. 0 кр."};
        QCOMPARE(limits(form), expected);
        form.reloadReglamentModel();
        QCOMPARE(limits(form), expected);
    }
}

GARAGE_TEST(TestScheduleReading)
#include "tst_schedulereading.moc"
