#include "data/datetimetext.h"
#include "support/garagetest.h"

#include <QTimeZone>

/// The date-time texts of the database, the messages and the tables.
class TestDateTimeText : public GarageTest
{
    Q_OBJECT
private slots:
    void readsWhatTheDatabaseHolds_data();
    void readsWhatTheDatabaseHolds();
    void everyHourOfAClockChangeIsReadRight();
    void whatIsNoDateTimeIsInvalid_data();
    void whatIsNoDateTimeIsInvalid();
    void writesMessagesInUtcAndTablesInLocalTime();
    void anInvalidDateTimeGivesNoText();
};

void TestDateTimeText::readsWhatTheDatabaseHolds_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("expected");
    const auto utc = [](int hour, int minute, int second = 0, int ms = 0) {
        return QDateTime(QDate(2026, 3, 8), QTime(hour, minute, second, ms), Qt::UTC);
    };
    QTest::newRow("minutes, no zone") << "2026-03-08T02:30" << utc(2, 30);
    QTest::newRow("a blank instead of T") << "2026-03-08 02:30" << utc(2, 30);
    QTest::newRow("seconds") << "2026-03-08T02:30:15" << utc(2, 30, 15);
    QTest::newRow("milliseconds") << "2026-03-08T02:30:15.123" << utc(2, 30, 15, 123);
    QTest::newRow("Z") << "2026-03-08T02:30Z" << utc(2, 30);
    QTest::newRow("milliseconds and Z") << "2026-03-08T02:30:15.123Z" << utc(2, 30, 15, 123);
    QTest::newRow("blank and Z") << "2026-03-08 02:30:15Z" << utc(2, 30, 15);
    QTest::newRow("ahead of UTC") << "2026-03-08T05:30+03:00" << utc(2, 30);
    QTest::newRow("behind UTC") << "2026-03-07T21:30:00.000-05:00" << utc(2, 30);
}

void TestDateTimeText::readsWhatTheDatabaseHolds()
{
    QFETCH(QString, text);
    QFETCH(QDateTime, expected);
    const QDateTime read = DateTimeText::fromDatabase(text);
    QCOMPARE(read, expected);
    QCOMPARE(read.timeSpec(), Qt::LocalTime);
}

void TestDateTimeText::everyHourOfAClockChangeIsReadRight()
{
    for (const char *zone : {"America/New_York", "Europe/Moscow", "Europe/Berlin"}) {
        qputenv("TZ", zone);
        for (const QDate &date :
             {QDate(2026, 3, 8), QDate(2026, 3, 29), QDate(2026, 10, 25), QDate(2026, 11, 1)}) {
            for (int hour = 0; hour < 24; ++hour) {
                const QDateTime expected(date, QTime(hour, 30), Qt::UTC);
                const QDateTime read =
                    DateTimeText::fromDatabase(expected.toString(QStringLiteral("yyyy-MM-ddThh:mm")));
                QCOMPARE(read.toSecsSinceEpoch(), expected.toSecsSinceEpoch());
                QCOMPARE(DateTimeText::forJson(read), expected.toString(QStringLiteral("yyyy-MM-ddThh:mm")));
            }
        }
    }
    qputenv("TZ", "Europe/Moscow");
}

void TestDateTimeText::whatIsNoDateTimeIsInvalid_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"", "2026-03-08", "12345", "yesterday", "2026-13-08T02:30", "2026-03-08T25:30",
                             "2026-03-08T", "2026-03-08X02:30", "08.03.2026 02:30", "2026-03-08T02:30Q"})
        QTest::newRow(*text ? text : "empty") << text;
}

void TestDateTimeText::whatIsNoDateTimeIsInvalid()
{
    QFETCH(QString, text);
    QVERIFY(!DateTimeText::fromDatabase(text).isValid());
}

void TestDateTimeText::writesMessagesInUtcAndTablesInLocalTime()
{
    const QDateTime local = QDateTime(QDate(2026, 7, 1), QTime(21, 5, 59), Qt::UTC).toLocalTime();
    QCOMPARE(DateTimeText::forDisplay(local), QStringLiteral("02.07.2026 00:05"));
    QCOMPARE(DateTimeText::forJson(local), QStringLiteral("2026-07-01T21:05"));
    QCOMPARE(DateTimeText::forJsonWithZone(local), QStringLiteral("2026-07-01T21:05Z"));
    QCOMPARE(DateTimeText::forServiceAnnouncement(local), QStringLiteral("2026-07-01 21:05"));
}

void TestDateTimeText::anInvalidDateTimeGivesNoText()
{
    QCOMPARE(DateTimeText::forDisplay({}), QString());
    QCOMPARE(DateTimeText::forJson({}), QString());
    QCOMPARE(DateTimeText::forJsonWithZone({}), QString());
    QCOMPARE(DateTimeText::forServiceAnnouncement({}), QString());
}

QTEST_GUILESS_MAIN(TestDateTimeText)
#include "tst_datetimetext.moc"
