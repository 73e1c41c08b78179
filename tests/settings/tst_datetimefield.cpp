#include "settings/datetimefield.h"
#include "settings/reglamentsettingsdialog.h"
#include "settings/servicedialog.h"
#include "support/garagetest.h"
#include "support/userinput.h"

#include <QCalendarWidget>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>

namespace {

/// Shows the field with this date and selects its day.
void open(DateTimeField &field, const QDateTime &shown)
{
    field.setDisplayFormat("dd.MM.yyyy HH:mm");
    field.setDateTime(shown);
    field.show();
    QVERIFY(QTest::qWaitForWindowActive(&field));
    field.setFocus();
    field.setSelectedSection(QDateTimeEdit::DaySection);
}

} // namespace

/// The date of a record as it is typed, shown and kept; the sizes of the dialogs.
class TestDateTimeField : public GarageTest
{
    Q_OBJECT
private slots:
    void aDateIsTypedWithItsSeparators_data();
    void aDateIsTypedWithItsSeparators();
    void theWholeTextDecides_data();
    void theWholeTextDecides();
    void theBackspaceKeyErasesInTheSectionThatWasClicked();
    void aDayThatTheMonthLacksBecomesItsLast_data();
    void aDayThatTheMonthLacksBecomesItsLast();
    void aWholeDateIsPasted_data();
    void aWholeDateIsPasted();
    void otherTextsArePastedAsBefore();
    void anHourThatTheClocksSkipDoesNoHarm();
    void theCalendarIsRussianInAnySystem_data();
    void theCalendarIsRussianInAnySystem();
    void anUntouchedTimeKeepsItsSeconds();
    void aChosenTimeIsAWholeMinute();
    void aComplaintStartsInItsComment();
    void titleBarsOfferNoHelp();
    void dialogsAreNeverBelowTheirSizeHint_data();
    void dialogsAreNeverBelowTheirSizeHint();
};

void TestDateTimeField::aDateIsTypedWithItsSeparators_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QDateTime>("date");
    const QDateTime date({2023, 3, 2}, {11, 12});
    QTest::newRow("all separators") << "02.03.2023 11:12" << date;
    QTest::newRow("no separators") << "020320231112" << date;
    QTest::newRow("some separators") << "02.03202311:12" << date;
    QTest::newRow("no leading zeros") << "2.3.2023 11:12" << date;
    QTest::newRow("digits that fill a section alone") << "4.5.2023 9:07" << QDateTime({2023, 5, 4}, {9, 7});
}

void TestDateTimeField::aDateIsTypedWithItsSeparators()
{
    QFETCH(QString, typed);
    for (const QDateTime &start : {QDateTime({2026, 11, 21}, {22, 14}), QDateTime({2024, 2, 29}, {0, 0}),
                                   QDateTime({2024, 5, 1}, {10, 0})}) {
        DateTimeField field;
        open(field, start);
        QTest::keyClicks(&field, typed);
        QTEST(field.dateTime(), "date");
    }
}

void TestDateTimeField::theWholeTextDecides_data()
{
    QTest::addColumn<QDate>("shown");
    QTest::addColumn<QString>("typed"); // "<" is the backspace key
    QTest::addColumn<QDateTime>("date");
    const QDate february(2026, 2, 15);
    const QDateTime newYearsEve({2026, 12, 31}, {10, 0});
    const QDateTime april({2026, 4, 30}, {10, 0});
    const QDateTime leapDay({2024, 2, 29}, {10, 0});
    QTest::newRow("31.12 from February") << february << "31.12.2026 10:00" << newYearsEve;
    QTest::newRow("31.12 without separators") << february << "311220261000" << newYearsEve;
    QTest::newRow("31.12 with some separators") << february << "31.12202610:00" << newYearsEve;
    QTest::newRow("31.12 from April") << QDate(2026, 4, 30) << "31.12.2026 10:00" << newYearsEve;
    QTest::newRow("30.04 from February") << february << "30.04.2026 10:00" << april;
    QTest::newRow("30.04 without separators") << february << "300420261000" << april;
    QTest::newRow("30.4 without a zero") << february << "30.4.2026 10:00" << april;
    QTest::newRow("31.1 without a zero")
        << february << "31.1.2026 10:00" << QDateTime({2026, 1, 31}, {10, 0});
    QTest::newRow("29.02 from 2023") << QDate(2023, 2, 15) << "29.02.2024 10:00" << leapDay;
    QTest::newRow("29.02 without separators") << QDate(2023, 2, 15) << "290220241000" << leapDay;
    QTest::newRow("29.02 from a 31st") << QDate(2023, 1, 31) << "29.02.2024 10:00" << leapDay;
    QTest::newRow("corrected day") << february << "31<0.04.2026 10:00" << april;
    QTest::newRow("corrected month") << february << "31.11<2.2026 10:00" << newYearsEve;
    QTest::newRow("corrected year") << february << "31.12.2025<6 10:00" << newYearsEve;
    QTest::newRow("seconds") << february << "31.12.2026 10:00:59" << newYearsEve;
    QTest::newRow("seconds of another minute")
        << february << "31.12.2026 23:59:01" << QDateTime({2026, 12, 31}, {23, 59});
}

void TestDateTimeField::theWholeTextDecides()
{
    QFETCH(QDate, shown);
    QFETCH(QString, typed);
    DateTimeField field;
    open(field, QDateTime(shown, {8, 30}));
    for (const QChar key : qAsConst(typed)) {
        if (key == '<')
            QTest::keyClick(&field, Qt::Key_Backspace);
        else
            QTest::keyClicks(&field, key);
    }
    QTEST(field.dateTime(), "date");
    field.clearFocus();
    QTEST(field.dateTime(), "date");
    QCOMPARE(field.text(), field.dateTime().toString("dd.MM.yyyy HH:mm"));
}

void TestDateTimeField::theBackspaceKeyErasesInTheSectionThatWasClicked()
{
    DateTimeField field;
    open(field, QDateTime({2026, 11, 21}, {22, 14}));
    QTest::keyClicks(&field, "02"); // the month is current
    auto *editor = child<QLineEdit>(field, "qt_spinbox_lineedit");
    editor->setCursorPosition(int(field.text().indexOf("22:14")) + 1);
    const QPoint hour = editor->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    field.setSelectedSection(QDateTimeEdit::MonthSection);
    QTest::mouseClick(editor, Qt::LeftButton, {}, hour);
    QTest::mouseDClick(editor, Qt::LeftButton, {}, hour);
    QCOMPARE(field.currentSection(), QDateTimeEdit::HourSection);
    QTest::keyClick(&field, Qt::Key_Backspace);
    QTest::keyClicks(&field, "09");
    field.clearFocus();
    QCOMPARE(field.dateTime(), QDateTime({2026, 11, 2}, {9, 14}));
}

void TestDateTimeField::aDayThatTheMonthLacksBecomesItsLast_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QDate>("date");
    QTest::newRow("31.02") << "31.02.2026 10:00" << QDate(2026, 2, 28);
    QTest::newRow("31.02 without separators") << "310220261000" << QDate(2026, 2, 28);
    QTest::newRow("30.02 of a leap year") << "30.02.2024 10:00" << QDate(2024, 2, 29);
    QTest::newRow("31.04") << "31.04.2026 10:00" << QDate(2026, 4, 30);
    QTest::newRow("29.02 of no leap year") << "29.02.2025 10:00" << QDate(2025, 2, 28);
}

void TestDateTimeField::aDayThatTheMonthLacksBecomesItsLast()
{
    QFETCH(QString, typed);
    QFETCH(QDate, date);
    for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Up}) {
        DateTimeField field;
        open(field, QDateTime({2025, 1, 31}, {8, 30}));
        QTest::keyClicks(&field, typed);
        QCOMPARE(field.date(), date);
        QTest::keyClick(&field, end);
        field.clearFocus();
        QCOMPARE(field.date(), date);
        QCOMPARE(field.text(), field.dateTime().toString("dd.MM.yyyy HH:mm"));
    }
}

void TestDateTimeField::aWholeDateIsPasted_data()
{
    QTest::addColumn<bool>("isAllSelected");
    QTest::addColumn<QString>("pasted");
    QTest::newRow("over everything") << true << "31.12.2026 10:00";
    QTest::newRow("over the day") << false << "31.12.2026 10:00";
    QTest::newRow("with blanks around") << false << " 31.12.2026 10:00\n";
}

void TestDateTimeField::aWholeDateIsPasted()
{
    QFETCH(bool, isAllSelected);
    QFETCH(QString, pasted);
    DateTimeField field;
    open(field, QDateTime({2025, 2, 15}, {8, 30}));
    QGuiApplication::clipboard()->setText(pasted);
    if (isAllSelected)
        field.selectAll();
    QTest::keySequence(&field, QKeySequence::Paste);
    field.clearFocus();
    QCOMPARE(field.dateTime(), QDateTime({2026, 12, 31}, {10, 0}));
}

void TestDateTimeField::otherTextsArePastedAsBefore()
{
    const QDateTime shown({2025, 2, 15}, {8, 30});
    for (const char *text : {"", "завтра", "31.12.2026", "2026-12-31 10:00", "99.99.9999 99:99", "31"}) {
        DateTimeField field;
        open(field, shown);
        QGuiApplication::clipboard()->setText(text);
        QTest::keySequence(&field, QKeySequence::Paste);
        field.clearFocus();
        QVERIFY(field.dateTime().isValid());
        QCOMPARE(field.date().year(), 2025);
        QCOMPARE(field.time(), shown.time());
    }
}

void TestDateTimeField::anHourThatTheClocksSkipDoesNoHarm()
{
    // Skipped in New York; an ordinary hour in Moscow.
    DateTimeField field;
    open(field, QDateTime({2025, 2, 15}, {8, 30}));
    QTest::keyClicks(&field, "08.03.2026 02:30");
    field.clearFocus();
    const qint64 minutes = std::abs(QDateTime({2026, 3, 8}, {2, 0}).secsTo(field.dateTime())) / 60;
    QVERIFY2(field.dateTime().isValid() && minutes <= 90, qPrintable(field.dateTime().toString(Qt::ISODate)));
    QCOMPARE(field.text(), field.dateTime().toString("dd.MM.yyyy HH:mm"));
}

void TestDateTimeField::theCalendarIsRussianInAnySystem_data()
{
    QTest::addColumn<QLocale>("system");
    QTest::newRow("C") << QLocale::c();
    QTest::newRow("English") << QLocale(QLocale::English, QLocale::UnitedStates);
    QTest::newRow("Persian") << QLocale(QLocale::Persian, QLocale::Iran);
}

void TestDateTimeField::theCalendarIsRussianInAnySystem()
{
    QFETCH(QLocale, system);
    const QLocale former;
    QLocale::setDefault(system);
    {
        ServiceDialog dialog;
        auto *field = dialog.findChild<QDateTimeEdit *>("deOperationDateTime");
        QVERIFY(field);
        field->setDateTime(QDateTime({2024, 5, 1}, {10, 0}));
        QCOMPARE(field->text(), "01.05.2024 10:00");
        QVERIFY(field->calendarPopup());
        QCOMPARE(field->calendarWidget()->locale().language(), QLocale::Russian);
        QCOMPARE(field->calendarWidget()->firstDayOfWeek(), Qt::Monday);
        QVERIFY(field->calendarWidget()->locale().monthName(5).startsWith("ма", Qt::CaseInsensitive));
    }
    QLocale::setDefault(former);
}

void TestDateTimeField::anUntouchedTimeKeepsItsSeconds()
{
    const QDateTime now({2024, 5, 1}, {10, 20, 30, 400});
    ServiceDialog dialog;
    dialog.setDateTime(now);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *field = dialog.findChild<QDateTimeEdit *>("deOperationDateTime");
    QCOMPARE(field->text(), "01.05.2024 10:20");
    for (int step = 0; step < 3; ++step)
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    dialog.accept();
    QCOMPARE(dialog.dateTime(), now);
}

void TestDateTimeField::aChosenTimeIsAWholeMinute()
{
    ServiceDialog dialog;
    dialog.setDateTime(QDateTime({2024, 5, 1}, {10, 20, 30, 400}));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *field = dialog.findChild<QDateTimeEdit *>("deOperationDateTime");
    field->setFocus();
    field->setSelectedSection(QDateTimeEdit::MinuteSection);
    QTest::keyClick(field, Qt::Key_Up);
    dialog.accept();
    QCOMPARE(dialog.dateTime(), QDateTime({2024, 5, 1}, {10, 21}));
}

void TestDateTimeField::aComplaintStartsInItsComment()
{
    ServiceDialog dialog;
    dialog.setComplaintMode();
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QCOMPARE(dialog.focusWidget(), dialog.findChild<QPlainTextEdit *>("teComments"));
    typeText(dialog.focusWidget(), "Стучит");
    dialog.accept();
    QCOMPARE(dialog.comment(), "Стучит");
}

void TestDateTimeField::titleBarsOfferNoHelp()
{
    QVERIFY(!ServiceDialog().windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    QVERIFY(!ReglamentSettingsDialog().windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void TestDateTimeField::dialogsAreNeverBelowTheirSizeHint_data()
{
    QTest::addColumn<int>("points");
    for (int points : {9, 14, 18})
        QTest::addRow("%d points", points) << points;
}

void TestDateTimeField::dialogsAreNeverBelowTheirSizeHint()
{
    QFETCH(int, points);
    ServiceDialog service;
    ReglamentSettingsDialog limits;
    for (QDialog *dialog : {static_cast<QDialog *>(&service), static_cast<QDialog *>(&limits)}) {
        QFont font = dialog->font();
        font.setPointSize(points);
        dialog->setFont(font);
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        const QSize least = dialog->sizeHint().boundedTo(dialog->screen()->availableSize());
        const auto isLargeEnough = [&] {
            return dialog->width() >= least.width() && dialog->height() >= least.height();
        };
        QTRY_VERIFY(isLargeEnough());
        dialog->resize(10, 10);
        QVERIFY(isLargeEnough());
        // A font that grows while the dialog is open.
        font.setPointSize(points + 4);
        dialog->setFont(font);
        const auto hasGrown = [&] {
            const QSize hint = dialog->sizeHint().boundedTo(dialog->screen()->availableSize());
            return dialog->width() >= hint.width() && dialog->height() >= hint.height();
        };
        QTRY_VERIFY(hasGrown());
    }
}

GARAGE_TEST(TestDateTimeField)
#include "tst_datetimefield.moc"
