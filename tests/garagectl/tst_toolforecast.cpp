#include "support/garagetest.h"

#include "garagectl/database/readonlyfile.h"
#include "garagectl/fleet/forecast.h"

#include <QRandomGenerator>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

const QDate monday(2026, 3, 2);

QVector<QDate> days(std::initializer_list<int> afterMonday)
{
    QVector<QDate> result;
    for (const int offset : afterMonday)
        result.append(monday.addDays(offset));
    return result;
}

MaintainanceItem car(int id, const QString &model)
{
    MaintainanceItem item;
    item.carId = id;
    item.num = QString::number(id);
    item.model = model;
    return item;
}

OperationStat driven(int laps)
{
    OperationStat stat;
    stat.opId = 1;
    stat.state = DoneState;
    stat.laps = laps;
    return stat;
}

/// A season of one kart: how many laps it drives on each day, 0 when the track is closed.
struct Season
{
    const char *name;
    int openDaysOfWeek; ///< the last ones of each week
    int lapsPerDay;
    double spread; ///< the laps of a day are within this share of the mean
    int limit;
};

constexpr Season steadySeasons[] = {
    {"every day", 7, 60, 0.3, 1200},         {"every day, uneven", 7, 60, 0.8, 1200},
    {"closed on Mondays", 6, 40, 0.5, 1000}, {"weekends", 2, 120, 0.5, 1500},
    {"short interval", 7, 50, 0.4, 400},
};

QVector<int> drive(const Season &season, QRandomGenerator &random, int dayCount)
{
    QVector<int> laps;
    for (int day = 0; day < dayCount; ++day) {
        const bool isOpen = monday.addDays(day).dayOfWeek() > 7 - season.openDaysOfWeek;
        const double factor = 1 + season.spread * (2 * random.generateDouble() - 1);
        laps.append(isOpen ? int(std::lround(season.lapsPerDay * factor)) : 0);
    }
    return laps;
}

/// The error of the expected day at half the way, as a share of the interval; none if the season is too
/// short.
std::optional<double> errorAtHalfTheWay(const Season &season, const QVector<int> &laps, int serviceDay)
{
    int sum = 0;
    int half = -1;
    int passed = -1;
    for (int day = serviceDay + 1; day < laps.size() && passed < 0; ++day) {
        sum += laps.at(day);
        if (half < 0 && sum >= season.limit / 2)
            half = day;
        if (sum > season.limit)
            passed = day;
    }
    if (passed < 0)
        return std::nullopt;

    QVector<DrivingDay> driving;
    for (int day = half; day >= 0 && driving.size() < 28; --day) {
        if (laps.at(day) > 0)
            driving.append({1, monday.addDays(day), 0, 0, laps.at(day)});
    }
    const int sinceService = std::accumulate(laps.cbegin() + serviceDay + 1, laps.cbegin() + half + 1, 0);
    const FleetPace paces({car(1, "A")}, driving);
    const QDate expected = expectedDay(driven(sinceService), {0, 0, season.limit}, paces.of(car(1, "A")),
                                       paces.openingDays(), monday.addDays(half));
    return std::abs(double(expected.toJulianDay() - monday.addDays(passed).toJulianDay()))
        / (passed - serviceDay);
}

} // namespace

/// When limits will be passed.
class TestToolForecast : public GarageTest
{
    Q_OBJECT
private slots:
    void openDaysAreCountedByWeekday_data();
    void openDaysAreCountedByWeekday();
    void aKartWithFewDaysTakesThePaceOfItsModel();
    void theFirstLimitDecides_data();
    void theFirstLimitDecides();
    void drivingIsReadByLocalDays();
    void onlyTheLastOpenDaysCount();
    void steadyDrivingIsForecastWithinAFifthOfTheInterval_data();
    void steadyDrivingIsForecastWithinAFifthOfTheInterval();
};

void TestToolForecast::openDaysAreCountedByWeekday_data()
{
    QTest::addColumn<QVector<QDate>>("open");
    QTest::addColumn<double>("needed");
    QTest::addColumn<QDate>("day");
    const QVector<QDate> daily = days({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13});
    const QVector<QDate> weekends = days({5, 6, 12, 13, 19, 20});
    // "Today" is the second Monday after the first one.
    QTest::newRow("daily, next day") << daily << 0.0 << monday.addDays(15);
    QTest::newRow("daily, five days") << daily << 4.5 << monday.addDays(19);
    QTest::newRow("weekends, next") << weekends << 1.0 << monday.addDays(19);
    QTest::newRow("weekends, third day") << weekends << 3.0 << monday.addDays(26);
    QTest::newRow("few days: no pattern yet") << days({5, 6}) << 3.0 << monday.addDays(17);
    QTest::newRow("never open") << QVector<QDate>() << 1.0 << QDate();
    QTest::newRow("in the far future") << daily << 1e9 << QDate();
}

void TestToolForecast::openDaysAreCountedByWeekday()
{
    QFETCH(QVector<QDate>, open);
    QFETCH(double, needed);
    QFETCH(QDate, day);
    QCOMPARE(OpeningDays(open).dayAfter(monday.addDays(14), needed), day);
}

void TestToolForecast::aKartWithFewDaysTakesThePaceOfItsModel()
{
    QVector<DrivingDay> driving;
    for (int day = 0; day < 10; ++day) {
        driving.append({1, monday.addDays(day), 600, 2, 30});
        if (day < 5)
            driving.append({2, monday.addDays(day), 600, 2, 30});
        if (day < 2)
            driving.append({3, monday.addDays(day), 600, 2, 30});
    }
    const FleetPace paces({car(1, "A"), car(2, "A"), car(3, "A"), car(4, "B")}, driving);
    QCOMPARE(paces.of(car(1, "A")).basis, Pace::Kart);
    QCOMPARE(paces.of(car(1, "A")).laps, 30.0);
    QCOMPARE(paces.of(car(2, "A")).basis, Pace::Kart);
    QCOMPARE(paces.of(car(2, "A")).runs, 1.0);
    QCOMPARE(paces.of(car(3, "A")).basis, Pace::Model);
    QCOMPARE(paces.of(car(3, "A")).seconds, 450.0);
    QCOMPARE(paces.of(car(4, "B")).basis, Pace::None);
    QCOMPARE(paces.of(car(4, "B")).laps, 0.0);
}

void TestToolForecast::theFirstLimitDecides_data()
{
    QTest::addColumn<Limits>("limits");
    QTest::addColumn<QDate>("day");
    // 100 laps, 10 runs and 1,000 seconds a day; 50 laps are driven.
    QTest::newRow("laps") << Limits {0, 0, 350} << monday.addDays(3);
    QTest::newRow("runs before laps") << Limits {0, 20, 350} << monday.addDays(2);
    QTest::newRow("seconds before both") << Limits {1000, 20, 350} << monday.addDays(1);
    QTest::newRow("exceeded already") << Limits {0, 0, 49} << QDate();
    QTest::newRow("exactly at the limit") << Limits {0, 0, 50} << monday.addDays(1);
    QTest::newRow("no limit") << Limits {} << QDate();
}

void TestToolForecast::theFirstLimitDecides()
{
    QFETCH(Limits, limits);
    QFETCH(QDate, day);
    const Pace pace {Pace::Kart, 1000, 10, 100};
    const OpeningDays daily(days({-14, -13, -12, -11, -10, -9, -8, -7, -6, -5, -4, -3, -2, -1}));
    QCOMPARE(expectedDay(driven(50), limits, pace, daily, monday), day);
}

void TestToolForecast::drivingIsReadByLocalDays()
{
    const auto database = createDatabase();
    database->addLap(1, 1, "2026-03-01T20:59:59.999Z", 60000); // 23:59 in Moscow
    database->addLap(1, 1, "2026-03-01T21:00:00.000Z", 61000);
    database->addLap(1, 2, "2026-03-02 05:00", 59000);
    database->addLap(2, 2, "2026-03-02T10:00:00+03:00", 50000);
    database->addLap(2, 2, "2026-03-02T10:00:00Z", 0); // no lap time
    for (const char *unreadable : {"yesterday", "now", "17:30", "2461000.5", ""})
        database->addLap(2, 2, unreadable, 50000);
    database->addLap(2, 2, "2026-03-09T10:00:00Z", 50000); // today: not over yet
    QStringList read;
    ReadOnlyFile::read(home().databasePath(), [&read](const GarageDatabase &garage) {
        read.clear();
        for (const DrivingDay &entry : readDrivingDays(garage, QDate(2026, 3, 9), 28))
            read.append(QString("%1 %2 %3 %4 %5")
                            .arg(entry.carId)
                            .arg(entry.day.toString(Qt::ISODate))
                            .arg(entry.seconds)
                            .arg(entry.runs)
                            .arg(entry.laps));
    });
    read.sort();
    QCOMPARE(read, QStringList({"1 2026-03-01 60 1 1", "1 2026-03-02 120 2 2", "2 2026-03-02 50 1 1"}));
}

void TestToolForecast::onlyTheLastOpenDaysCount()
{
    const auto database = createDatabase();
    for (int day = 0; day < 40; ++day) {
        const QString noon = monday.addDays(-7 * day).toString(Qt::ISODate) + "T09:00:00.000Z";
        database->addLap(1, day, noon, 60000);
    }
    QVector<QDate> read;
    for (const int openDays : {1, 5, 28, 100}) {
        ReadOnlyFile::read(home().databasePath(), [&](const GarageDatabase &garage) {
            read.clear();
            for (const DrivingDay &entry : readDrivingDays(garage, monday.addDays(1), openDays))
                read.append(entry.day);
        });
        std::sort(read.begin(), read.end());
        QCOMPARE(read.size(), std::min(openDays, 40));
        QCOMPARE(read.last(), monday);
        QCOMPARE(read.first(), monday.addDays(-7 * (read.size() - 1)));
    }
}

void TestToolForecast::steadyDrivingIsForecastWithinAFifthOfTheInterval_data()
{
    QTest::addColumn<int>("season");
    for (int i = 0; i < int(std::size(steadySeasons)); ++i)
        QTest::newRow(steadySeasons[i].name) << i;
}

void TestToolForecast::steadyDrivingIsForecastWithinAFifthOfTheInterval()
{
    QFETCH(int, season);
    QVector<double> errors;
    for (quint32 seed = 1; seed <= 200; ++seed) {
        QRandomGenerator random(seed);
        const QVector<int> laps = drive(steadySeasons[season], random, 300);
        const auto error = errorAtHalfTheWay(steadySeasons[season], laps, 30 + int(seed % 60));
        QVERIFY(error);
        errors.append(*error);
    }
    std::sort(errors.begin(), errors.end());
    const double median = errors.at(errors.size() / 2);
    const double ninetieth = errors.at(errors.size() * 9 / 10);
    qInfo("error at half the way: median %.1f %%, 90 %% below %.1f %% of the interval", 100 * median,
          100 * ninetieth);
    QVERIFY2(median <= 0.2, qPrintable(QString::number(median)));
}

Q_DECLARE_METATYPE(Limits)

GARAGE_TEST_WITHOUT_WINDOWS(TestToolForecast)
#include "tst_toolforecast.moc"
