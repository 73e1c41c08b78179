#include "data/columnkeys.h"
#include "data/duerule.h"
#include "data/numbertext.h"
#include "support/garagetest.h"

#include <limits>

/// When an operation is due, and the small rules of numbers and column keys.
class TestDueRule : public GarageTest
{
    Q_OBJECT
private slots:
    void anOperationIsDueAboveALimit_data();
    void anOperationIsDueAboveALimit();
    void numbersAreReadAsScanfDoes_data();
    void numbersAreReadAsScanfDoes();
    void columnKeysCarryTheOperationBothWays_data();
    void columnKeysCarryTheOperationBothWays();
};

void TestDueRule::anOperationIsDueAboveALimit_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("runs");
    QTest::addColumn<int>("laps");
    QTest::addColumn<int>("timeLimit");
    QTest::addColumn<int>("runsLimit");
    QTest::addColumn<int>("lapsLimit");
    QTest::addColumn<bool>("due");
    QTest::addColumn<bool>("dueForFilter");

    QTest::newRow("no limits") << 9999 << 99 << 999 << 0 << 0 << 0 << false << false;
    QTest::newRow("the tenth lap of ten") << 0 << 0 << 10 << 0 << 0 << 10 << false << false;
    QTest::newRow("the eleventh lap of ten") << 0 << 0 << 11 << 0 << 0 << 10 << true << true;
    QTest::newRow("exactly the runs") << 0 << 5 << 0 << 0 << 5 << 0 << false << false;
    QTest::newRow("one run more") << 0 << 6 << 0 << 0 << 5 << 0 << true << true;
    QTest::newRow("exactly the time") << 3600 << 0 << 0 << 3600 << 0 << 0 << false << false;
    QTest::newRow("one second more") << 3601 << 0 << 0 << 3600 << 0 << 0 << true << true;
    QTest::newRow("one of three is enough") << 1 << 1 << 11 << 100 << 100 << 10 << true << true;
    QTest::newRow("a negative limit colours but does not filter")
        << 0 << 0 << 0 << -1 << 0 << 0 << true << false;
    QTest::newRow("a limit of one") << 0 << 2 << 0 << 0 << 1 << 0 << true << true;
}

void TestDueRule::anOperationIsDueAboveALimit()
{
    QFETCH(int, seconds);
    QFETCH(int, runs);
    QFETCH(int, laps);
    QFETCH(int, timeLimit);
    QFETCH(int, runsLimit);
    QFETCH(int, lapsLimit);
    OperationStat stat;
    stat.totalTime = seconds;
    stat.runs = runs;
    stat.laps = laps;
    const Limits limits {timeLimit, runsLimit, lapsLimit};
    QTEST(DueRule::isDue(stat, limits), "due");
    QTEST(DueRule::isDueForFilter(stat, limits), "dueForFilter");
}

void TestDueRule::numbersAreReadAsScanfDoes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    constexpr int none = -99;
    QTest::newRow("digits") << "12" << 12;
    QTest::newRow("followed by a letter") << "3B" << 3;
    QTest::newRow("after a blank") << " 12" << 12;
    QTest::newRow("negative") << "-7" << -7;
    QTest::newRow("plus") << "+7" << 7;
    QTest::newRow("letter first") << "A5" << none;
    QTest::newRow("empty") << "" << none;
    QTest::newRow("a sign alone") << "-" << none;
    QTest::newRow("a sign and a blank") << "- 5" << none;
    QTest::newRow("not an ASCII digit") << QString(QChar(0x0665)) << none;
    QTest::newRow("beyond 32 bits") << "99999999999999999999999" << std::numeric_limits<int>::max();
    QTest::newRow("10 times the largest, negative") << "-21474836470" << std::numeric_limits<int>::min();
    QTest::newRow("below 32 bits") << "-99999999999999999999999" << std::numeric_limits<int>::min();
}

void TestDueRule::numbersAreReadAsScanfDoes()
{
    QFETCH(QString, text);
    QTEST(leadingInteger(text).value_or(-99), "number");
}

void TestDueRule::columnKeysCarryTheOperationBothWays_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("opId");
    QTest::newRow("operation") << ColumnKeys::operation(7) << 7;
    QTest::newRow("complaint") << ColumnKeys::operation(-1) << -1;
    QTest::newRow("largest") << ColumnKeys::operation(std::numeric_limits<int>::max())
                             << std::numeric_limits<int>::max();
    QTest::newRow("fixed column") << QString(ColumnKeys::model) << -1;
    QTest::newRow("no number") << "OP_x" << -1;
    QTest::newRow("nothing") << "" << -1;
}

void TestDueRule::columnKeysCarryTheOperationBothWays()
{
    QFETCH(QString, key);
    QTEST(ColumnKeys::operationId(key), "opId");
}

GARAGE_TEST_WITHOUT_WINDOWS(TestDueRule)
#include "tst_duerule.moc"
