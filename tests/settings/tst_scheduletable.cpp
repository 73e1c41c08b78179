#include "settingspagetest.h"

#include <QApplication>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>

/// The settings page's table of limits by car model and operation.
class TestScheduleTable : public SettingsPageTest
{
    Q_OBJECT
private slots:
    void onlyOperationCellsAskForLimits_data();
    void onlyOperationCellsAskForLimits();
    void limitsAreStoredAsTyped_data();
    void limitsAreStoredAsTyped();
    void cancellingChangesNothing();
    void limitsGoToTheCellThatWasClickedWhateverHappensMeanwhile();
    void theReglamentViewSurvivesLosingRowsAndColumns();
    void draggedWidthsSurviveAReload();
};

void TestScheduleTable::onlyOperationCellsAskForLimits_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QStringList>("shown"); // model, operation, limits
    QTest::newRow("number") << 0 << 0 << QStringList();
    QTest::newRow("model") << 0 << 1 << QStringList();
    QTest::newRow("with limits") << 0 << 2 << QStringList({"SODI", "Масло", "1.5", "10", ""});
    QTest::newRow("without limits") << 1 << 3 << QStringList({"Rimo", "Цепь", "", "", ""});
}

void TestScheduleTable::onlyOperationCellsAskForLimits()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(QStringList, shown);
    open();
    QStringList seen;
    if (!shown.isEmpty()) {
        onNextDialog([&seen](QDialog &dialog) {
            seen.append(child<QLabel>(dialog, "lModelName")->text());
            seen.append(child<QGroupBox>(dialog, "gbParameterName")->title());
            for (const char *field : {"leTime", "leRunsCount", "leLapsCount"})
                seen.append(child<QLineEdit>(dialog, field)->text());
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
    }
    doubleClick(scheduleView(), schedule()->index(row, column));
    QCOMPARE(seen, shown);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(QMetaObject::invokeMethod(m_form, "on_tvServiceReglament_doubleClicked",
                                      Q_ARG(QModelIndex, QModelIndex())));
}

void TestScheduleTable::limitsAreStoredAsTyped_data()
{
    QTest::addColumn<QStringList>("typed");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const QStringList &typed, const QString &stored,
                        const QString &shown) { QTest::newRow(name) << typed << stored << shown; };
    row("comma", {"1,5", "3", "4"}, "Rimo|5|5400|3|4", "1.5 ч. 3 заезд. 4 кр.");
    row("point", {"1.5", "3", ""}, "Rimo|5|5400|3|0", "1.5 ч. 3 заезд. 0 кр.");
    row("empty", {"", "", ""}, "Rimo|5|0|0|0", "");
    row("letters", {"час", "три", "4a"}, "Rimo|5|0|0|0", "");
    row("negative", {"-1", "-2", "-3"}, "Rimo|5|-3600|-2|-3", "-1.0 ч. -2 заезд. -3 кр.");
    row("a second", {"0.0003", "", ""}, "Rimo|5|1|0|0", "0.0 ч. 0 заезд. 0 кр.");
    row("very large", {"9e99", "2147483647", "2147483648"}, "Rimo|5|2147483647|2147483647|0",
        "596523.2 ч. 2147483647 заезд. 0 кр.");
}

void TestScheduleTable::limitsAreStoredAsTyped()
{
    QFETCH(QStringList, typed);
    open();
    QSignalSpy changed(schedule(), &QAbstractItemModel::dataChanged);
    const QModelIndex cell = schedule()->index(1, 3);
    onNextDialog([&typed](QDialog &dialog) {
        enterText(child<QLineEdit>(dialog, "leTime"), typed.at(0));
        enterText(child<QLineEdit>(dialog, "leRunsCount"), typed.at(1));
        enterText(child<QLineEdit>(dialog, "leLapsCount"), typed.at(2));
        press(dialog, QDialogButtonBox::Ok);
    });
    doubleClick(scheduleView(), cell);
    QTEST(storedLimits().first(), "stored");
    QCOMPARE(storedLimits().size(), 2);
    QTEST(cell.data().toString(), "shown");
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), cell);
    QCOMPARE(changed.at(0).at(1).toModelIndex(), cell);
    QCOMPARE(m_events->count(), 0);
}

void TestScheduleTable::cancellingChangesNothing()
{
    open();
    QSignalSpy changed(schedule(), &QAbstractItemModel::dataChanged);
    onNextDialog([](QDialog &dialog) {
        enterText(child<QLineEdit>(dialog, "leTime"), "9");
        press(dialog, QDialogButtonBox::Cancel);
    });
    doubleClick(scheduleView(), schedule()->index(0, 2));
    QCOMPARE(storedLimits(), QStringList("SODI|2|5400|10|0"));
    QCOMPARE(scheduleCell(0, 2), "1.5 ч. 10 заезд. 0 кр.");
    QCOMPARE(changed.count(), 0);
}

void TestScheduleTable::limitsGoToTheCellThatWasClickedWhateverHappensMeanwhile()
{
    open();
    const auto enterRuns = [](QDialog &dialog, const QString &runs) {
        enterText(child<QLineEdit>(dialog, "leRunsCount"), runs);
        press(dialog, QDialogButtonBox::Ok);
    };
    onNextDialog([&](QDialog &dialog) {
        database->exec("DELETE FROM cars WHERE name='SODI'");
        database->addCar(7, "7", "SODI");
        m_form->reloadReglamentModel();
        enterRuns(dialog, "44");
    });
    doubleClick(scheduleView(), schedule()->index(0, 2));
    QCOMPARE(storedLimits(), QStringList("SODI|2|5400|44|0"));
    QCOMPARE(rowTexts(*schedule()), QStringList({"1|Rimo||", "2|SODI|1.5 ч. 44 заезд. 0 кр.|"}));

    onNextDialog([&](QDialog &dialog) {
        database->exec("DELETE FROM cars");
        m_form->reloadReglamentModel();
        enterRuns(dialog, "55");
    });
    doubleClick(scheduleView(), schedule()->index(1, 2));
    QCOMPARE(storedLimits(), QStringList("SODI|2|5400|55|0"));
    QCOMPARE(schedule()->rowCount(), 0);
}

void TestScheduleTable::theReglamentViewSurvivesLosingRowsAndColumns()
{
    open();
    auto *view = scheduleView();
    const QModelIndex last = schedule()->index(1, 3);
    click(view, last);
    QCOMPARE(view->currentIndex(), last);
    select(1);
    onNextDialog(QDialogButtonBox::Yes);
    trigger("actionRemoveOperation");

    database->exec("DELETE FROM cars WHERE name='Rimo'");
    m_form->reloadReglamentModel();
    QCOMPARE(schedule()->rowCount(), 1);
    QCOMPARE(schedule()->columnCount(), 3);
    QVERIFY(!view->currentIndex().isValid());
    for (Qt::Key key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_End, Qt::Key_Up, Qt::Key_Home})
        QTest::keyClick(view, key);
    QVERIFY(!view->grab().isNull());

    database->exec("DELETE FROM cars");
    m_form->reloadReglamentModel();
    QTest::keyClick(view, Qt::Key_Down);
    QVERIFY(!view->grab().isNull());
}

void TestScheduleTable::draggedWidthsSurviveAReload()
{
    open();
    auto *view = scheduleView();
    QCOMPARE(view->columnWidth(0), 50);
    QCOMPARE(view->columnWidth(1), 80);
    QCOMPARE(view->columnWidth(2), 120);
    QCOMPARE(operationsView()->columnWidth(0), 60);
    view->setColumnWidth(1, 155);
    view->setColumnWidth(3, 95);
    trigger("actionAddOperation");
    enterName("Шины");
    QCOMPARE(view->columnWidth(1), 155);
    QCOMPARE(view->columnWidth(2), 120);
    QCOMPARE(view->columnWidth(3), 95);
    QCOMPARE(view->columnWidth(4), 120);
}

GARAGE_TEST(TestScheduleTable)
#include "tst_scheduletable.moc"
