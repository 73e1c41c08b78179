#include "settings/reglamentsettingsdialog.h"
#include "support/garagetest.h"
#include "support/userinput.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QToolTip>

/// The dialog for the limits of one operation and car model, used as a person does.
class TestReglamentSettingsDialog : public GarageTest
{
    Q_OBJECT
private slots:
    void asksForThreeLimits();
    void aStoredLimitIsShownAndNoneIsEmpty_data();
    void aStoredLimitIsShownAndNoneIsEmpty();
    void hoursAreReadAsSeconds_data();
    void hoursAreReadAsSeconds();
    void runsAndLapsAreReadAsIntegers_data();
    void runsAndLapsAreReadAsIntegers();
    void aClearedFieldRemovesTheLimit();
    void cancellingReadsNothing();
    void tabAndMnemonicOrderIsTopDown();
    void namesAreShownAsTheyAre_data();
    void namesAreShownAsTheyAre();
    void aLongNameDoesNotMakeTheDialogWider();
    void aCutNameIsShownWholeAsAToolTip();
};

namespace {

QLineEdit *field(const ReglamentSettingsDialog &dialog, const char *name)
{
    return child<QLineEdit>(dialog, name);
}

QPushButton *button(const ReglamentSettingsDialog &dialog, QDialogButtonBox::StandardButton which)
{
    return child<QDialogButtonBox>(dialog, "buttonBox")->button(which);
}

void show(ReglamentSettingsDialog &dialog)
{
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
}

} // namespace

void TestReglamentSettingsDialog::asksForThreeLimits()
{
    ReglamentSettingsDialog dialog;
    QCOMPARE(dialog.windowTitle(), "Лимиты наработки");
    QCOMPARE(child<QLabel>(dialog, "label")->text(), "Время, ч");
    QCOMPARE(child<QLabel>(dialog, "label_2")->text(), "Количество заездов");
    QCOMPARE(child<QLabel>(dialog, "label_3")->text(), "Количество кругов");
    QCOMPARE(button(dialog, QDialogButtonBox::Ok)->text(), "ОК");
    QCOMPARE(button(dialog, QDialogButtonBox::Cancel)->text(), "Отмена");
    QVERIFY(!dialog.limits().hasAny());
}

void TestReglamentSettingsDialog::aStoredLimitIsShownAndNoneIsEmpty_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("hoursText");
    QTest::addColumn<QString>("countText");
    const auto row = [](const char *name, int seconds, int count, const QString &hoursText,
                        const QString &countText) {
        QTest::newRow(name) << seconds << count << hoursText << countText;
    };
    row("none", 0, 0, "", "");
    row("ordinary", 5400, 12, "1.5", "12");
    row("one second", 1, 1, "0.0", "1");
    row("half an hour, nearly", 1799, 7, "0.5", "7");
    row("negative", -5400, -3, "-1.5", "-3");
    row("largest", 2147483647, 2147483647, "596523.2", "2147483647");
}

void TestReglamentSettingsDialog::aStoredLimitIsShownAndNoneIsEmpty()
{
    QFETCH(int, seconds);
    QFETCH(int, count);
    const QLocale previous;
    QLocale::setDefault(QLocale(QLocale::Russian));
    ReglamentSettingsDialog dialog;
    dialog.setTimeLimit(seconds);
    dialog.setRunsLimit(count);
    dialog.setLapsLimit(count);
    QLocale::setDefault(previous);
    QTEST(field(dialog, "leTime")->text(), "hoursText");
    QTEST(field(dialog, "leRunsCount")->text(), "countText");
    QTEST(field(dialog, "leLapsCount")->text(), "countText");
}

void TestReglamentSettingsDialog::hoursAreReadAsSeconds_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("seconds");
    QTest::newRow("point") << "1.5" << 5400;
    QTest::newRow("comma") << "1,5" << 5400;
    QTest::newRow("whole") << "2" << 7200;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("letters") << "час" << 0;
    QTest::newRow("number and letters") << "1,5 ч" << 0;
    QTest::newRow("two separators") << "1,000.5" << 0;
    QTest::newRow("blanks around") << " 1,5 " << 5400;
    QTest::newRow("negative") << "-1,5" << -5400;
    QTest::newRow("truncated") << "0.0003" << 1;
    QTest::newRow("truncated towards zero") << "-0.0003" << -1;
    QTest::newRow("less than a second") << "0.0002" << 0;
    QTest::newRow("above the range") << "99999999999" << 2147483647;
    QTest::newRow("below the range") << "-99999999999" << (-2147483647 - 1);
    QTest::newRow("far above the range") << "1e300" << 2147483647;
    QTest::newRow("infinite") << "inf" << 0;
    QTest::newRow("infinite with a sign") << "-inf" << 0;
    QTest::newRow("beyond a double") << "1e999" << 2147483647;
    QTest::newRow("not a number") << "nan" << 0;
}

void TestReglamentSettingsDialog::hoursAreReadAsSeconds()
{
    QFETCH(QString, typed);
    ReglamentSettingsDialog dialog;
    show(dialog);
    typeText(field(dialog, "leTime"), typed);
    QTest::keyClick(field(dialog, "leTime"), Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
    QTEST(dialog.limits().seconds, "seconds");
    QCOMPARE(dialog.limits().runs, 0);
    QCOMPARE(dialog.limits().laps, 0);
}

void TestReglamentSettingsDialog::runsAndLapsAreReadAsIntegers_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("count");
    QTest::newRow("ordinary") << "25" << 25;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("letters") << "много" << 0;
    QTest::newRow("fraction") << "1.5" << 0;
    QTest::newRow("number and letters") << "3 круга" << 0;
    QTest::newRow("negative") << "-4" << -4;
    QTest::newRow("largest") << "2147483647" << 2147483647;
    QTest::newRow("beyond 32 bits") << "2147483648" << 0;
    QTest::newRow("beyond 64 bits") << "99999999999999999999" << 0;
    QTest::newRow("hexadecimal") << "0x10" << 0;
    QTest::newRow("leading zero") << "010" << 10;
}

void TestReglamentSettingsDialog::runsAndLapsAreReadAsIntegers()
{
    QFETCH(QString, typed);
    for (const bool forRuns : {true, false}) {
        ReglamentSettingsDialog dialog;
        show(dialog);
        typeText(field(dialog, forRuns ? "leRunsCount" : "leLapsCount"), typed);
        press(dialog, QDialogButtonBox::Ok);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QTEST(forRuns ? dialog.limits().runs : dialog.limits().laps, "count");
        QCOMPARE(forRuns ? dialog.limits().laps : dialog.limits().runs, 0);
        QCOMPARE(dialog.limits().seconds, 0);
    }
}

void TestReglamentSettingsDialog::aClearedFieldRemovesTheLimit()
{
    ReglamentSettingsDialog dialog;
    dialog.setTimeLimit(5400);
    dialog.setRunsLimit(8);
    dialog.setLapsLimit(9);
    show(dialog);
    enterText(field(dialog, "leTime"), {});
    enterText(field(dialog, "leLapsCount"), {});
    press(dialog, QDialogButtonBox::Ok);
    QCOMPARE(dialog.limits().seconds, 0);
    QCOMPARE(dialog.limits().runs, 8);
    QCOMPARE(dialog.limits().laps, 0);
}

void TestReglamentSettingsDialog::cancellingReadsNothing()
{
    for (const bool byKey : {true, false}) {
        ReglamentSettingsDialog dialog;
        dialog.setTimeLimit(5400);
        show(dialog);
        typeText(field(dialog, "leRunsCount"), "3");
        if (byKey)
            QTest::keyClick(&dialog, Qt::Key_Escape);
        else
            press(dialog, QDialogButtonBox::Cancel);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QVERIFY(!dialog.limits().hasAny());
    }
}

void TestReglamentSettingsDialog::tabAndMnemonicOrderIsTopDown()
{
    ReglamentSettingsDialog dialog;
    show(dialog);
    QStringList names;
    for (int i = 0; i < 4; ++i) {
        names.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(names.mid(0, 3), QStringList({"leTime", "leRunsCount", "leLapsCount"}));
    QCOMPARE(child<QLabel>(dialog, "label_2")->buddy(), field(dialog, "leRunsCount"));
}

void TestReglamentSettingsDialog::namesAreShownAsTheyAre_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("quotes") << "\"Масло\" 'синт.'";
    QTest::newRow("percent") << "100% %1 %s %n";
    QTest::newRow("markup") << "<b>Масло</b>";
    QTest::newRow("ampersand") << "Масло & фильтр";
    QTest::newRow("emoji") << "🏎 Цепь";
    QTest::newRow("10,000 characters") << QString(10000, 'x');
    QTest::newRow("line feeds") << "Масло\nи\nфильтр";
}

void TestReglamentSettingsDialog::namesAreShownAsTheyAre()
{
    QFETCH(QString, name);
    ReglamentSettingsDialog dialog;
    dialog.setModelName(name);
    dialog.setOperationName(name);
    QCOMPARE(child<QLabel>(dialog, "lModelName")->text(), name);
    QCOMPARE(child<QGroupBox>(dialog, "gbParameterName")->title(), QString(name).replace('\n', ' '));
    QVERIFY(!dialog.grab().isNull());
}

void TestReglamentSettingsDialog::aLongNameDoesNotMakeTheDialogWider()
{
    ReglamentSettingsDialog dialog;
    dialog.setModelName(QString(10000, 'x'));
    dialog.setOperationName(QString(10000, 'x'));
    show(dialog);
    QVERIFY2(dialog.width() < 600, qPrintable(QString::number(dialog.width())));
    QVERIFY2(dialog.height() < 300, qPrintable(QString::number(dialog.height())));
}

void TestReglamentSettingsDialog::aCutNameIsShownWholeAsAToolTip()
{
    const auto hover = [](QWidget *widget) {
        const QPoint at(5, 5);
        QHelpEvent event(QEvent::ToolTip, at, widget->mapToGlobal(at));
        QApplication::sendEvent(widget, &event);
    };
    ReglamentSettingsDialog dialog;
    dialog.setModelName("SODI");
    dialog.setOperationName("<i>" + QString(100, 'x'));
    show(dialog);
    hover(child<QGroupBox>(dialog, "gbParameterName"));
    QVERIFY(QToolTip::isVisible());
    QVERIFY(QToolTip::text().contains("&lt;i&gt;" + QString(100, 'x')));
    hover(child<QLabel>(dialog, "lModelName"));
    QTRY_VERIFY(!QToolTip::isVisible());
}

GARAGE_TEST(TestReglamentSettingsDialog)
#include "tst_reglamentsettingsdialog.moc"
