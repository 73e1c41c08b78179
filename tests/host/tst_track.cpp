#include "support/garagetest.h"

#include "host/app/demohost.h"
#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"

#include <QSignalSpy>

namespace {

constexpr qint64 hour = 3600 * 1000;

int countEvents(const MessageLogModel &journal, const QString &event)
{
    int count = 0;
    for (int row = 0; row < journal.rowCount(); ++row)
        count += journal.entry(row).event == event ? 1 : 0;
    return count;
}

} // namespace

/// Karts driving: in the simulation, into the file, and on to the plug-in.
class TestTrack final : public GarageTest
{
    Q_OBJECT

private slots:
    void onlyAvailableCarsDriveAndLapsAreBelievable();
    void theSameSeedDrivesTheSameRuns();
    void timeInSmallStepsDrivesAsFarAsInOne();
    void withoutCarsNobodyDrives();
    void lapsGoIntoTheFileAndRunsGetNewIds();
    void lapsThatMeetALockAreKept();
    void runIdsWaitForALockedFile();
    void lapsOnTheirWayReachTheFileAtTheEnd();
    void aRunByHandIsAnnounced();
    void liveRunsAreAnnouncedAndLieInTheRealPast();
    void bigNewsIsNotAnnouncedFasterThanItIsAnswered();
};

void TestTrack::onlyAvailableCarsDriveAndLapsAreBelievable()
{
    RaceSimulation simulation(1);
    simulation.setAvailableCars({3, 5, 8, 9, 11});
    const RaceSimulation::Step step = simulation.advance(hour);
    QVERIFY(step.finishedRuns.size() >= 6);
    QVERIFY(step.laps.size() > 100);
    for (const SimulatedLap &lap : step.laps) {
        QVERIFY((QVector<int> {3, 5, 8, 9, 11}.contains(lap.carId)));
        QVERIFY(lap.milliseconds > 30000 && lap.milliseconds < 60000);
        QVERIFY(lap.stepShare >= 0 && lap.stepShare <= 1);
    }
}

void TestTrack::theSameSeedDrivesTheSameRuns()
{
    const auto drive = [](quint32 seed) {
        RaceSimulation simulation(seed);
        simulation.setAvailableCars({1, 2, 3, 4, 5, 6, 7});
        QVector<int> times;
        for (const SimulatedLap &lap : simulation.advance(hour).laps)
            times.append(lap.milliseconds);
        return times;
    };
    QCOMPARE(drive(7), drive(7));
    QVERIFY(drive(7) != drive(8));
}

void TestTrack::timeInSmallStepsDrivesAsFarAsInOne()
{
    RaceSimulation whole(2);
    RaceSimulation pieces(2);
    whole.setAvailableCars({1, 2, 3, 4});
    pieces.setAvailableCars({1, 2, 3, 4});
    int laps = 0;
    for (int minute = 0; minute < 60; ++minute)
        laps += int(pieces.advance(hour / 60).laps.size());
    // Chance falls differently, distance does not.
    QVERIFY(std::abs(laps - whole.advance(hour).laps.size()) < laps / 20);
}

void TestTrack::withoutCarsNobodyDrives()
{
    RaceSimulation simulation(1);
    const RaceSimulation::Step step = simulation.advance(hour);
    QCOMPARE(step.laps.size(), 0);
    QCOMPARE(step.finishedRuns.size(), 0);
}

void TestTrack::lapsGoIntoTheFileAndRunsGetNewIds()
{
    const std::unique_ptr<TestDatabase> database = createDatabase();
    database->addLap(1, 41, "2026-01-01T10:00:00.000Z", 40000);
    LapRecorder recorder(home().databasePath());
    QSignalSpy runs(&recorder, &LapRecorder::runSaved);
    recorder.record({{7, 1, 0, 40000}, {8, 2, 1000, 41000}}, {1});
    recorder.record({{7, 2, 2000, 42000}}, {2});
    QCOMPARE(runs.count(), 2);
    QCOMPARE(runs.at(1).first().toInt(), 43);
    QCOMPARE(database->rows("SELECT car_id,run_id,lap_timestamp,sum_sectors FROM laps WHERE run_id>41 "
                            "ORDER BY lap_id"),
             (QStringList {"7|42|1970-01-01T00:00:00.000Z|40000", "8|43|1970-01-01T00:00:01.000Z|41000",
                           "7|43|1970-01-01T00:00:02.000Z|42000"}));
}

void TestTrack::lapsThatMeetALockAreKept()
{
    const std::unique_ptr<TestDatabase> database = createDatabase();
    LapRecorder recorder(home().databasePath());
    QSignalSpy failures(&recorder, &LapRecorder::failed);
    QSignalSpy runs(&recorder, &LapRecorder::runSaved);
    database->exec("BEGIN IMMEDIATE");
    recorder.record({{7, 1, 0, 40000}}, {1});
    QCOMPARE(failures.count(), 1);
    QCOMPARE(runs.count(), 0);
    database->exec("COMMIT");
    recorder.record({{7, 2, 0, 40000}}, {});
    QTRY_COMPARE(runs.count(), 1);
    QCOMPARE(database->value("SELECT count(*) FROM laps").toInt(), 2);
}

void TestTrack::runIdsWaitForALockedFile()
{
    const std::unique_ptr<TestDatabase> database = createDatabase();
    database->addLap(1, 41, "2026-01-01T10:00:00.000Z", 40000);
    LapRecorder recorder(home().databasePath());
    QSignalSpy failures(&recorder, &LapRecorder::failed);
    QSignalSpy runs(&recorder, &LapRecorder::runSaved);
    database->exec("BEGIN EXCLUSIVE");
    recorder.record({{7, 1, 0, 40000}}, {1});
    QCOMPARE(failures.count(), 1);
    database->exec("COMMIT");
    QTRY_COMPARE(runs.count(), 1);
    QCOMPARE(runs.first().first().toInt(), 42);
}

void TestTrack::lapsOnTheirWayReachTheFileAtTheEnd()
{
    const std::unique_ptr<TestDatabase> database = createDatabase();
    QVERIFY(HostDatabase::prepare(DataFolder::userDocuments()));
    {
        DemoHost host(DataFolder::userDocuments(), 1);
        for (int run = 0; run < 50; ++run)
            host.track().recordRun({4}, 1, 43000);
    }
    QCOMPARE(database->value("SELECT count(*) FROM laps").toInt(), 50);
}

void TestTrack::aRunByHandIsAnnounced()
{
    const std::unique_ptr<TestDatabase> database = createDatabase();
    QVERIFY(HostDatabase::prepare(DataFolder::userDocuments()));
    DemoHost host(DataFolder::userDocuments(), 1);
    QVERIFY(host.plugin().load(FAKE_PLUGIN));
    host.track().recordRun({4, 5}, 10, 43000);
    QTRY_COMPARE(countEvents(host.messageLog(), "run_saved_to_db"), 1);
    QCOMPARE(countEvents(host.messageLog(), "run_closed"), 1);
    QCOMPARE(database->value("SELECT count(*) FROM laps WHERE sum_sectors=43000").toInt(), 20);
    QCOMPARE(database->value("SELECT count(DISTINCT run_id) FROM laps").toInt(), 1);
    QCOMPARE(database->value("SELECT count(DISTINCT lap_timestamp) FROM laps WHERE car_id=4").toInt(), 10);
}

void TestTrack::liveRunsAreAnnouncedAndLieInTheRealPast()
{
    const std::unique_ptr<TestDatabase> database = createDatabase();
    for (int car = 1; car <= 6; ++car)
        database->addCar(car, QString::number(car), "Вихрь");
    QVERIFY(HostDatabase::prepare(DataFolder::userDocuments()));
    DemoHost host(DataFolder::userDocuments(), 1);
    QVERIFY(host.plugin().load(FAKE_PLUGIN));
    host.track().setSpeed(5000);
    QCOMPARE(host.track().speed(), Track::fastest);
    const QString start = QDateTime::currentDateTimeUtc().addSecs(-1).toString(Qt::ISODateWithMs);
    host.track().setLive(true);
    QTRY_VERIFY_WITH_TIMEOUT(host.track().savedRuns() >= 2, 20000);
    host.track().setLive(false);
    QVERIFY(countEvents(host.messageLog(), "run_saved_to_db") >= 1);
    const QString end = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
    QVERIFY(database->value("SELECT min(lap_timestamp) FROM laps").toString() >= start);
    QVERIFY(database->value("SELECT max(lap_timestamp) FROM laps").toString() <= end);
}

void TestTrack::bigNewsIsNotAnnouncedFasterThanItIsAnswered()
{
    createDatabase();
    QVERIFY(HostDatabase::prepare(DataFolder::userDocuments()));
    DemoHost host(DataFolder::userDocuments(), 1);
    QVERIFY(host.plugin().load(FAKE_PLUGIN));
    for (int run = 0; run < 20; ++run)
        host.track().recordRun({4}, 1, 43000);
    QTRY_COMPARE(host.track().savedRuns(), 20);
    QTRY_COMPARE(countEvents(host.messageLog(), "update_pending_service"), 2);
    QCOMPARE(countEvents(host.messageLog(), "run_closed"), 20);
    QCOMPARE(countEvents(host.messageLog(), "run_saved_to_db"), 2);
}

GARAGE_TEST(TestTrack)
#include "tst_track.moc"
