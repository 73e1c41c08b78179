#include "support/garagetest.h"

#include "garagectl/exitcode.h"
#include "garagectl/output/csv.h"
#include "garagectl/output/texttable.h"
#include "garagectl/output/textwidth.h"
#include "garagectl/output/timetext.h"
#include "garagectl/wording.h"

/// The writers of the command-line tool.
class TestToolOutput : public GarageTest
{
    Q_OBJECT
private slots:
    void widthsAreThoseOfATerminal_data();
    void widthsAreThoseOfATerminal();
    void longTextsAreElidedToTheirCells_data();
    void longTextsAreElidedToTheirCells();
    void nothingInATextActsOnTheTerminal();
    void columnsAreAligned();
    void coloursDoNotMoveColumns();
    void csvCellsAreSafe_data();
    void csvCellsAreSafe();
    void csvRowsFollowTheirColumns();
    void timesAreUtcForProgramsAndLocalForPeople();
    void daysAreRead_data();
    void daysAreRead();
};

void TestToolOutput::widthsAreThoseOfATerminal_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("cells");
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("Latin") << "kart" << 4;
    QTest::newRow("Cyrillic") << "Вихрь" << 5;
    QTest::newRow("combining mark") << QString("и") + QChar(0x0306) << 1;
    QTest::newRow("East Asian") << "車両" << 4;
    QTest::newRow("emoji") << "🏁" << 2;
    QTest::newRow("joined emoji") << "👩‍🔧" << 2;
    QTest::newRow("flag") << "🇫🇮" << 2;
    QTest::newRow("emoji by variation selector") << QString(QChar(0x2764)) + QChar(0xFE0F) << 2;
}

void TestToolOutput::widthsAreThoseOfATerminal()
{
    QFETCH(QString, text);
    QFETCH(int, cells);
    QCOMPARE(TextWidth::width(text), cells);
}

void TestToolOutput::longTextsAreElidedToTheirCells_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("elided");
    QTest::newRow("fits") << "12345"
                          << "12345";
    QTest::newRow("too long") << "123456"
                              << "1234…";
    QTest::newRow("a wide character is not halved") << "123車両"
                                                    << "123…";
    QTest::newRow("wide, fits") << "1車両"
                                << "1車両";
    QTest::newRow("very long") << QString(10000, 'x') << "xxxx…";
}

void TestToolOutput::longTextsAreElidedToTheirCells()
{
    QFETCH(QString, text);
    QFETCH(QString, elided);
    QCOMPARE(TextWidth::elided(text, 5), elided);
}

void TestToolOutput::nothingInATextActsOnTheTerminal()
{
    QCOMPARE(TextWidth::printable("a\nb\tc\r\n d"), QString("a b c d"));
    QCOMPARE(TextWidth::printable("\033[31mred\a"), QString("�[31mred�"));
    QCOMPARE(TextWidth::printable(QString("a") + QChar(0x202E) + "b"), QString("a�b"));
    QCOMPARE(TextWidth::printable(QString(QChar(0x9B)) + "31m"), QString("�31m"));
    QCOMPARE(TextWidth::printable("👩‍🔧 %s <script>"), QString("👩‍🔧 %s <script>"));
}

void TestToolOutput::columnsAreAligned()
{
    TextTable table({{"Name"}, {"N", TextTable::Right}, {"Last"}});
    table.addRow({QString("Вихрь"), QString("7"), QString("a")});
    table.addRow({QString("車両🏁"), QString("128"), QString()});
    table.addFooter("Rows: 2");
    QCOMPARE(table.toText(false),
             QString("Name      N  Last\n"
                     "─────────────────\n"
                     "Вихрь     7  a\n"
                     "車両🏁  128\n"
                     "\n"
                     "Rows: 2\n"));
}

void TestToolOutput::coloursDoNotMoveColumns()
{
    TextTable table({{"A"}, {"B"}});
    table.addRow({{"x", TextTable::Bad}, {"y", TextTable::Plain}});
    table.addRow({QString("long"), QString("z")});
    QString coloured = table.toText(true);
    QVERIFY(coloured.contains("\033[31mx\033[0m     y"));
    coloured.remove("\033[31m");
    coloured.remove("\033[0m");
    QCOMPARE(coloured, table.toText(false));
}

void TestToolOutput::csvCellsAreSafe_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cell");
    QTest::newRow("plain") << "Вихрь"
                           << "Вихрь";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("comma") << "a,b"
                           << "\"a,b\"";
    QTest::newRow("quotes") << "a \"b\""
                            << "\"a \"\"b\"\"\"";
    QTest::newRow("line feed") << "a\nb"
                               << "\"a\nb\"";
    QTest::newRow("formula") << "=1+1"
                             << "'=1+1";
    QTest::newRow("plus") << "+7 900"
                          << "'+7 900";
    QTest::newRow("minus") << "-5"
                           << "'-5";
    QTest::newRow("at") << "@SUM(A1)"
                        << "'@SUM(A1)";
    QTest::newRow("tab") << "\tx"
                         << "'\tx";
    QTest::newRow("formula with a comma") << "=f(1,2)"
                                          << "\"'=f(1,2)\"";
    QTest::newRow("sign inside") << "a=b"
                                 << "a=b";
}

void TestToolOutput::csvCellsAreSafe()
{
    QFETCH(QString, text);
    QFETCH(QString, cell);
    QCOMPARE(Csv::textCell(text), cell);
}

void TestToolOutput::csvRowsFollowTheirColumns()
{
    const QJsonArray rows {
        QJsonObject {
            {"name", "=x"}, {"share", 1.25}, {"limits", QJsonObject {{"laps", -3}}}, {"pending", true}},
        QJsonObject {{"name", "y"}, {"share", QJsonValue()}}};
    QCOMPARE(Csv::fromRows({"name", "share", "limits.laps", "pending"}, rows),
             QByteArray("name,share,limitsLaps,pending\r\n'=x,1.25,-3,true\r\ny,,,\r\n"));
    QCOMPARE(Csv::fromRows({"name", "limits.laps"}, {}), QByteArray("name,limitsLaps\r\n"));
}

void TestToolOutput::timesAreUtcForProgramsAndLocalForPeople()
{
    const QDateTime time(QDate(2026, 3, 1), QTime(10, 5, 7), Qt::UTC);
    Wording::use(Wording::English);
    QCOMPARE(TimeText::forJson(time.toLocalTime()), QJsonValue("2026-03-01T10:05:07Z"));
    QCOMPARE(TimeText::forPeople(time.toLocalTime()), QString("2026-03-01 13:05"));
    Wording::use(Wording::Russian);
    QCOMPARE(TimeText::forPeople(time.toLocalTime()), QString("01.03.2026 13:05"));
    QCOMPARE(TimeText::forJson(QDateTime()), QJsonValue());
    QCOMPARE(TimeText::forPeople(QDateTime()), QString("—"));
}

void TestToolOutput::daysAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDate>("day");
    QTest::newRow("ISO") << "2026-12-31" << QDate(2026, 12, 31);
    QTest::newRow("Russian") << "31.12.2026" << QDate(2026, 12, 31);
    QTest::newRow("no day") << "2026-02-30" << QDate();
    QTest::newRow("word") << "tomorrow" << QDate();
    QTest::newRow("a year with a sign") << "29.02.+028" << QDate();
}

void TestToolOutput::daysAreRead()
{
    QFETCH(QString, text);
    QFETCH(QDate, day);
    QDate read;
    try {
        read = TimeText::dayFromArgument(text);
    } catch (const Failure &failure) {
        QCOMPARE(failure.code, ExitCode::BadUsage);
        QVERIFY(failure.message.contains(text));
    }
    QCOMPARE(read, day);
}

GARAGE_TEST_WITHOUT_WINDOWS(TestToolOutput)
#include "tst_tooloutput.moc"
