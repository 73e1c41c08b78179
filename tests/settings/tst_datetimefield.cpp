#include "settings/datetimefield.h"
#include "settings/reglamentsettingsdialog.h"
#include "settings/servicedialog.h"
#include "support/garagetest.h"
#include "support/userinput.h"

#include <QCalendarWidget>
#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>

/// The date of a record as it is typed, shown and kept; the sizes of the dialogs.
class TestDateTimeField : public GarageTest
{
    Q_OBJECT
private slots:
    void aDateIsTypedWithItsSeparators_data();
    void aDateIsTypedWithItsSeparators();
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
        field.setDisplayFormat("dd.MM.yyyy HH:mm");
        field.setDateTime(start);
        field.show();
        QVERIFY(QTest::qWaitForWindowActive(&field));
        field.setFocus();
        field.setSelectedSection(QDateTimeEdit::DaySection);
        QTest::keyClicks(&field, typed);
        QTEST(field.dateTime(), "date");
    }
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
