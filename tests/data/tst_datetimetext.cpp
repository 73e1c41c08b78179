#include "data/datetimetext.h"
#include "support/garagetest.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QScopeGuard>

namespace {

/// A text without a zone is in UTC.
QDateTime readByQt(QString text)
{
    if (text.size() <= 10) // a date alone
        return {};
    if (text.at(10) == ' ')
        text[10] = 'T';
    if (text.mid(13, 1) != ":")
        return {}; // Qt 6 reads an hour without minutes
    static const QRegularExpression zone("(Z|[+-].*)$");
    if (!zone.match(text, 10).hasMatch())
        text += 'Z';
    return QDateTime::fromString(text, Qt::ISODate);
}

} // namespace

/// The date-time texts of the database, the messages and the tables.
class TestDateTimeText : public GarageTest
{
    Q_OBJECT
private slots:
    void readsWhatTheDatabaseHolds_data();
    void readsWhatTheDatabaseHolds();
    void everyHourOfAClockChangeIsReadRight();
    void randomTextsAreReadAsQtReadsThem_data();
    void randomTextsAreReadAsQtReadsThem();
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
    const RecordTime read = DateTimeText::fromDatabase(text);
    QCOMPARE(read.toLocalTime(), expected);
    QCOMPARE(read.toLocalTime().timeSpec(), Qt::LocalTime);
    QCOMPARE(read.toUtc(), expected);
}

void TestDateTimeText::everyHourOfAClockChangeIsReadRight()
{
    for (const char *zone : {"America/New_York", "Europe/Moscow", "Europe/Berlin"}) {
        qputenv("TZ", zone);
        for (const QDate &date :
             {QDate(2026, 3, 8), QDate(2026, 3, 29), QDate(2026, 10, 25), QDate(2026, 11, 1)}) {
            for (int hour = 0; hour < 24; ++hour) {
                const QDateTime expected(date, QTime(hour, 30), Qt::UTC);
                const QString text = expected.toString("yyyy-MM-ddThh:mm");
                const QDateTime read = DateTimeText::fromDatabase(text).toLocalTime();
                QCOMPARE(read.toSecsSinceEpoch(), expected.toSecsSinceEpoch());
                QCOMPARE(DateTimeText::fromDatabase(expected.toString(Qt::ISODate)), RecordTime(expected));
                QCOMPARE(DateTimeText::forJson(read), expected.toString("yyyy-MM-ddThh:mm"));
            }
        }
    }
    qputenv("TZ", "Europe/Moscow");
}

void TestDateTimeText::randomTextsAreReadAsQtReadsThem_data()
{
    QTest::addColumn<QByteArray>("zone");
    for (const char *zone : {"Europe/Moscow", "Europe/Berlin", "America/New_York", "Australia/Lord_Howe",
                             "Asia/Kathmandu", "Pacific/Apia", "Africa/Casablanca", "UTC"})
        QTest::newRow(zone) << QByteArray(zone);
}

void TestDateTimeText::randomTextsAreReadAsQtReadsThem()
{
    QFETCH(QByteArray, zone);
    const QByteArray previousZone = qgetenv("TZ");
    qputenv("TZ", zone);
    const auto restore = qScopeGuard([&] { qputenv("TZ", previousZone); });
    const QStringList formats {"yyyy-MM-ddThh:mm",           "yyyy-MM-dd hh:mm",
                               "yyyy-MM-ddThh:mm:ss",        "yyyy-MM-ddThh:mm:ss.zzz",
                               "yyyy-MM-ddThh:mm:ss.zzz'Z'", "yyyy-MM-dd hh:mm'Z'",
                               "yyyy-MM-ddThh:mm:ss'+03:00'"};
    const QString replacements = "019-:.TZ +x\u0661";

    QRandomGenerator random(20261121);
    for (int i = 0; i < 4000; ++i) {
        // From 1935 to 2062.
        const qint64 second = qint64(random.generate()) - 1100000000;
        QString text = QDateTime::fromSecsSinceEpoch(second, Qt::UTC)
                           .addMSecs(random.bounded(1000))
                           .toString(formats.at(random.bounded(formats.size())));
        if (i % 3 == 0)
            text[random.bounded(text.size())] = replacements.at(random.bounded(replacements.size()));
        if (i % 10 == 0)
            text.chop(random.bounded(6));

        const QDateTime expected = readByQt(text).toLocalTime();
        const QDateTime read = DateTimeText::fromDatabase(text).toLocalTime();
        QVERIFY2(read == expected && read.isValid() == expected.isValid(), qPrintable(text));
        QCOMPARE(read.timeSpec(), expected.timeSpec());
        QCOMPARE(read.toMSecsSinceEpoch(), expected.toMSecsSinceEpoch());
        QCOMPARE(read.offsetFromUtc(), expected.offsetFromUtc());
        QCOMPARE(DateTimeText::forDisplay(read), DateTimeText::forDisplay(expected));
    }
}

void TestDateTimeText::whatIsNoDateTimeIsInvalid_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"", "2026-03-08", "12345", "yesterday", "2026-13-08T02:30", "2026-03-08T25:30",
                             "2026-03-08T", "2026-03-08T02", "2026-03-08T02Z", "2026-03-08T02,30",
                             "2026-03-08X02:30", "08.03.2026 02:30", "2026-03-08T02:30Q"})
        QTest::newRow(*text ? text : "empty") << text;
}

void TestDateTimeText::whatIsNoDateTimeIsInvalid()
{
    QFETCH(QString, text);
    QVERIFY(!DateTimeText::fromDatabase(text).isValid());
    QVERIFY(!DateTimeText::fromDatabase(text).toLocalTime().isValid());
}

void TestDateTimeText::writesMessagesInUtcAndTablesInLocalTime()
{
    const QDateTime local = QDateTime(QDate(2026, 7, 1), QTime(21, 5, 59), Qt::UTC).toLocalTime();
    QCOMPARE(DateTimeText::forDisplay(local), "02.07.2026 00:05");
    QCOMPARE(DateTimeText::forJson(local), "2026-07-01T21:05");
    QCOMPARE(DateTimeText::forJsonWithZone(local), "2026-07-01T21:05Z");
    QCOMPARE(DateTimeText::forServiceAnnouncement(local), "2026-07-01 21:05");
}

void TestDateTimeText::anInvalidDateTimeGivesNoText()
{
    QCOMPARE(DateTimeText::forDisplay({}), QString());
    QCOMPARE(DateTimeText::forJson({}), QString());
    QCOMPARE(DateTimeText::forJsonWithZone({}), QString());
    QCOMPARE(DateTimeText::forServiceAnnouncement({}), QString());
}

GARAGE_TEST_WITHOUT_WINDOWS(TestDateTimeText)
#include "tst_datetimetext.moc"
