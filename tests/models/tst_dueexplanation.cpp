#include "data/duerule.h"
#include "models/dueexplanation.h"
#include "support/garagetest.h"
#include "support/maintainancesample.h"

#include <limits>

using namespace MaintainanceSample;

Q_DECLARE_METATYPE(OperationStat)
Q_DECLARE_METATYPE(Limits)
Q_DECLARE_METATYPE(ServiceLogItem)

namespace {

constexpr int opId = 7;
constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();

ServiceLogItem recordOf(const QString &person, const QString &operation = {})
{
    ServiceLogItem record;
    record.personName = person;
    record.opName = operation;
    return record;
}

} // namespace

/// The arithmetic and the words of the maintenance table's tool tips.
class TestDueExplanation : public GarageTest
{
    Q_OBJECT
private slots:
    void eachLimitSaysWhatIsLeft_data();
    void eachLimitSaysWhatIsLeft();
    void exactlyWhatIsDueIsExceeded();
    void limitsOfWhatWasNeverRecorded_data();
    void limitsOfWhatWasNeverRecorded();
    void durationsAreInHoursAndMinutes_data();
    void durationsAreInHoursAndMinutes();
    void theLatestWorkHasDateAndPerson();
    void openWorkHasDatePersonAndText_data();
    void openWorkHasDatePersonAndText();
};

void TestDueExplanation::eachLimitSaysWhatIsLeft_data()
{
    QTest::addColumn<OperationStat>("stat");
    QTest::addColumn<Limits>("limit");
    QTest::addColumn<QString>("lines");
    const auto driven = [](int seconds, int runs, int laps) {
        return done(opId, noonOf(1), seconds, runs, laps);
    };
    const auto limit = [](int seconds, int runs, int laps) { return Limits {seconds, runs, laps}; };
    QTest::newRow("no limits") << driven(5, 5, 5) << limit(0, 0, 0) << "Лимиты не заданы";
    QTest::newRow("all left") << driven(0, 0, 0) << limit(36000, 20, 300)
                              << "Время: 0 ч из 10 ч, осталось 10 ч|Заезды: 0 из 20, осталось 20|"
                                 "Круги: 0 из 300, осталось 300";
    QTest::newRow("at the limit") << driven(3600, 10, 50) << limit(3600, 10, 50)
                                  << "Время: 1 ч из 1 ч, осталось 0 ч|Заезды: 10 из 10, осталось 0|"
                                     "Круги: 50 из 50, осталось 0";
    QTest::newRow("one over") << driven(3601, 11, 51) << limit(3600, 10, 50)
                              << "Время: 1 ч из 1 ч, превышено на 1 с|Заезды: 11 из 10, превышено на 1|"
                                 "Круги: 51 из 50, превышено на 1";
    QTest::newRow("time alone") << driven(9000, 11, 51) << limit(7200, 0, 0)
                                << "Время: 2 ч 30 мин из 2 ч, превышено на 30 мин";
    QTest::newRow("laps alone") << driven(9000, 11, 51) << limit(0, 0, 60) << "Круги: 51 из 60, осталось 9";
    QTest::newRow("negative") << driven(0, 0, 0) << limit(-3600, -1, -2)
                              << "Время: 0 ч из -1 ч, превышено на 1 ч|Заезды: 0 из -1, превышено на 1|"
                                 "Круги: 0 из -2, превышено на 2";
    QTest::newRow("extremes") << driven(0, largest, smallest) << limit(0, smallest, largest)
                              << "Заезды: 2147483647 из -2147483648, превышено на 4294967295|"
                                 "Круги: -2147483648 из 2147483647, осталось 4294967295";
}

void TestDueExplanation::eachLimitSaysWhatIsLeft()
{
    QFETCH(OperationStat, stat);
    QFETCH(Limits, limit);
    QTEST(DueExplanation::limitLines(stat, limit).join('|'), "lines");
}

void TestDueExplanation::exactlyWhatIsDueIsExceeded()
{
    QRandomGenerator random(11);
    const auto near = [&random] { return random.bounded(-2, 4); };
    int due = 0;
    for (int round = 0; round < 2000; ++round) {
        const OperationStat stat =
            done(opId, noonOf(1), random.bounded(4), random.bounded(4), random.bounded(4));
        const Limits limit {near(), near(), near()};
        const bool isExceeded = !DueExplanation::limitLines(stat, limit).filter("превышено").isEmpty();
        QCOMPARE(isExceeded, DueRule::isDue(stat, limit));
        due += isExceeded ? 1 : 0;
    }
    QVERIFY(due > 200 && due < 1900);
}

void TestDueExplanation::limitsOfWhatWasNeverRecorded_data()
{
    QTest::addColumn<Limits>("limit");
    QTest::addColumn<QString>("lines");
    QTest::newRow("none") << Limits() << "Лимиты не заданы|Работа не записана";
    QTest::newRow("all") << Limits {5400, 10, 50}
                         << "Время: лимит 1 ч 30 мин|Заезды: лимит 10|Круги: лимит 50|Работа не записана";
}

void TestDueExplanation::limitsOfWhatWasNeverRecorded()
{
    QFETCH(Limits, limit);
    QTEST(DueExplanation::limitLines(limit).join('|'), "lines");
}

void TestDueExplanation::durationsAreInHoursAndMinutes_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << qint64(0) << "0 ч";
    QTest::newRow("a second") << qint64(1) << "1 с";
    QTest::newRow("under a minute") << qint64(59) << "59 с";
    QTest::newRow("a minute") << qint64(60) << "1 мин";
    QTest::newRow("under an hour") << qint64(3599) << "59 мин";
    QTest::newRow("an hour") << qint64(3600) << "1 ч";
    QTest::newRow("an hour and a half") << qint64(5400) << "1 ч 30 мин";
    QTest::newRow("negative") << qint64(-5400) << "-1 ч 30 мин";
    QTest::newRow("long") << qint64(largest) * 2 << "1193046 ч 28 мин";
}

void TestDueExplanation::durationsAreInHoursAndMinutes()
{
    QFETCH(qint64, seconds);
    QTEST(DueExplanation::duration(seconds), "text");
}

void TestDueExplanation::theLatestWorkHasDateAndPerson()
{
    const ServiceLogItem record = recordOf("Иванов  Иван ");
    QCOMPARE(DueExplanation::lastWork(done(opId, noonOf(1)), &record),
             "Последняя работа: 01.05.2024 12:00, Иванов Иван");
    QCOMPARE(DueExplanation::lastWork(done(opId, noonOf(1)), nullptr), "Последняя работа: 01.05.2024 12:00");
    QCOMPARE(DueExplanation::lastWork(open(opId, noonOf(1)), &record),
             "Задание: 01.05.2024 12:00, Иванов Иван");
    // What people typed is never part of a pattern.
    const ServiceLogItem odd = recordOf("%1 %L2");
    QCOMPARE(DueExplanation::lastWork(done(opId, noonOf(1)), &odd),
             "Последняя работа: 01.05.2024 12:00, %1 %L2");
}

void TestDueExplanation::openWorkHasDatePersonAndText_data()
{
    QTest::addColumn<OperationStat>("stat");
    QTest::addColumn<ServiceLogItem>("record");
    QTest::addColumn<QString>("text");
    const auto withComment = [](int op, const QString &comment) {
        OperationStat stat = open(op, noonOf(2));
        stat.comment = comment;
        return stat;
    };
    QTest::newRow("complaint") << withComment(complaintOperationId, "Стучит") << recordOf("Петров")
                               << "Жалоба, 02.05.2024 12:00, Петров\nСтучит";
    QTest::newRow("task") << withComment(opId, "Срочно") << recordOf("Петров", "Замена\nмасла")
                          << "Задание, Замена масла, 02.05.2024 12:00, Петров\nСрочно";
    QTest::newRow("nothing but a date")
        << withComment(complaintOperationId, {}) << recordOf({}) << "Жалоба, 02.05.2024 12:00";
    QTest::newRow("a long text") << withComment(complaintOperationId, QString("x\n").repeated(100))
                                 << recordOf({}) << "Жалоба, 02.05.2024 12:00\nx\nx\nx\nx\nx\nx…";
}

void TestDueExplanation::openWorkHasDatePersonAndText()
{
    QFETCH(OperationStat, stat);
    QFETCH(ServiceLogItem, record);
    QTEST(DueExplanation::openWork(stat, &record), "text");
}

GARAGE_TEST(TestDueExplanation)
#include "tst_dueexplanation.moc"
