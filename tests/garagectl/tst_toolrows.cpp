#include "support/garagetest.h"

#include "garagectl/fleet/duerow.h"
#include "garagectl/fleet/rowfilter.h"

namespace {

OperationStat driven(int seconds, int runs, int laps)
{
    OperationStat stat;
    stat.totalTime = seconds;
    stat.runs = runs;
    stat.laps = laps;
    stat.state = DoneState;
    return stat;
}

MaintainanceItem carWith(const QVector<OperationStat> &stats)
{
    MaintainanceItem car;
    car.carId = 1;
    car.num = "7";
    car.model = "Вихрь";
    for (const OperationStat &stat : stats)
        car.ops.insert(stat.opId, stat);
    return car;
}

OperationStat record(int opId, int state, int laps = 0, const QString &comment = {})
{
    OperationStat stat = driven(0, 0, laps);
    stat.opId = opId;
    stat.state = state;
    stat.comment = comment;
    return stat;
}

} // namespace

/// The rows of the command-line tool, from records alone.
class TestToolRows : public GarageTest
{
    Q_OBJECT
private slots:
    void theLargestShareDecides_data();
    void theLargestShareDecides();
    void whatIsLeftCountsDownToTheLimit();
    void eachStateHasItsReason_data();
    void eachStateHasItsReason();
    void aKartHasARowForEachLimitRecordAndOpenComplaint();
    void filtersAdmitByTextOrId();
};

void TestToolRows::theLargestShareDecides_data()
{
    QTest::addColumn<Limits>("limits");
    QTest::addColumn<double>("share");
    QTest::addColumn<int>("meter");
    QTest::newRow("laps") << Limits {1000, 10, 20} << 0.5 << int(Meters::Laps);
    QTest::newRow("runs") << Limits {1000, 2, 20} << 1.0 << int(Meters::Runs);
    QTest::newRow("seconds") << Limits {100, 0, 0} << 3.6 << int(Meters::Seconds);
    QTest::newRow("equal: the first") << Limits {360, 2, 10} << 1.0 << int(Meters::Seconds);
    QTest::newRow("none") << Limits {0, 0, 0} << -1.0 << -1;
    QTest::newRow("negative has none") << Limits {-1, 0, 0} << -1.0 << -1;
    QTest::newRow("negative beside another") << Limits {-1, 4, 0} << 0.5 << int(Meters::Runs);
}

void TestToolRows::theLargestShareDecides()
{
    QFETCH(Limits, limits);
    QFETCH(double, share);
    QFETCH(int, meter);
    const std::optional<Meters::Share> largest = Meters::largestShare(driven(360, 2, 10), limits);
    QCOMPARE(largest ? largest->value : -1.0, share);
    QCOMPARE(largest ? int(largest->meter) : -1, meter);
}

void TestToolRows::whatIsLeftCountsDownToTheLimit()
{
    const Limits limits {0, 2, 15};
    QVERIFY(!Meters::left(driven(9, 3, 10), limits, Meters::Seconds));
    QCOMPARE(*Meters::left(driven(9, 3, 10), limits, Meters::Runs), qint64(-1));
    QCOMPARE(*Meters::left(driven(9, 3, 10), limits, Meters::Laps), qint64(5));
    const int largest = std::numeric_limits<int>::max();
    QCOMPARE(*Meters::left(driven(0, 0, largest), {0, 0, -largest}, Meters::Laps), -2 * qint64(largest));
}

void TestToolRows::eachStateHasItsReason_data()
{
    QTest::addColumn<OperationStat>("stat");
    QTest::addColumn<Limits>("limits");
    QTest::addColumn<DueState>("state");
    QTest::addColumn<bool>("pending");
    QTest::newRow("below soon") << record(1, DoneState, 7) << Limits {0, 0, 10} << DueState::Ok << false;
    QTest::newRow("soon from the share on")
        << record(1, DoneState, 8) << Limits {0, 0, 10} << DueState::Soon << false;
    QTest::newRow("exactly the limit")
        << record(1, DoneState, 10) << Limits {0, 0, 10} << DueState::Soon << false;
    QTest::newRow("over the limit") << record(1, DoneState, 11) << Limits {0, 0, 10} << DueState::Due << true;
    QTest::newRow("open below the limit")
        << record(1, OpenState, 1) << Limits {0, 0, 10} << DueState::Open << true;
    QTest::newRow("open over the limit")
        << record(1, OpenState, 11) << Limits {0, 0, 10} << DueState::Open << true;
    QTest::newRow("negative limit") << record(1, DoneState, 0) << Limits {0, 0, -1} << DueState::Due << true;
    QTest::newRow("no limit") << record(1, DoneState, 99) << Limits {} << DueState::Ok << false;
    QTest::newRow("open, limits of 0") << record(1, OpenState, 99) << Limits {} << DueState::Open << true;
}

void TestToolRows::eachStateHasItsReason()
{
    QFETCH(OperationStat, stat);
    QFETCH(Limits, limits);
    QFETCH(DueState, state);
    QFETCH(bool, pending);
    const FleetStatus fleet {{carWith({stat})}, {{"Вихрь", {{1, {1, "Chain", limits}}}}}, {{1, "Chain"}}};
    const QVector<DueRow> rows = dueRows(fleet, 0.8);
    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows.first().state, state);
    QCOMPARE(rows.first().isPending, pending);
}

void TestToolRows::aKartHasARowForEachLimitRecordAndOpenComplaint()
{
    const MaintainanceItem car = carWith({record(complaintOperationId, OpenState, 0, "noise"),
                                          record(2, DoneState), record(3, OpenState), record(5, DoneState)});
    const MaintainanceItem healthy = carWith({record(complaintOperationId, DoneState)});
    const QMap<int, ReglamentLimit> limits {
        {1, {1, "Oil", {0, 0, 5}}}, {3, {3, "Chain", {}}}, {4, {4, "Tyres", {}}}};
    const FleetStatus fleet {
        {car, healthy}, {{"Вихрь", limits}}, {{1, "Oil"}, {2, "Brakes"}, {3, "Chain"}, {4, "Tyres"}}};

    QStringList shown;
    for (const DueRow &row : dueRows(fleet, 0.8)) {
        shown.append(QString("%1 %2 %3%4")
                         .arg(row.opId)
                         .arg(row.operation)
                         .arg(int(row.state))
                         .arg(row.isPending ? " pending" : ""));
    }
    const auto state = [](DueState value) { return QString::number(int(value)); };
    QCOMPARE(shown,
             QStringList({"-1 noise " + state(DueState::Open) + " pending", "1 Oil " + state(DueState::Never),
                          "2 Brakes " + state(DueState::Ok), "3 Chain " + state(DueState::Open) + " pending",
                          "5  " + state(DueState::Ok), "1 Oil " + state(DueState::Never)}));
}

void TestToolRows::filtersAdmitByTextOrId()
{
    RowFilter filter;
    QVERIFY(filter.accepts("7", "Вихрь", 1, "Замена масла"));
    filter.operations = {"замена МАСЛА", "4"};
    QVERIFY(filter.accepts("7", "Вихрь", 1, "Замена масла"));
    QVERIFY(filter.accepts("7", "Вихрь", 4, "Цепь"));
    QVERIFY(!filter.accepts("7", "Вихрь", 5, "Цепь"));
    filter.cars = {"07"};
    QVERIFY(!filter.accepts("7", "Вихрь", 4, "Цепь"));
    filter.cars = {"8", "7"};
    filter.models = {"вихрь"};
    QVERIFY(!filter.accepts("7", "Вихрь", 4, "Цепь"));
}

Q_DECLARE_METATYPE(Limits)
Q_DECLARE_METATYPE(OperationStat)
Q_DECLARE_METATYPE(DueState)

GARAGE_TEST_WITHOUT_WINDOWS(TestToolRows)
#include "tst_toolrows.moc"
