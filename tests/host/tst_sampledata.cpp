#include "support/garagetest.h"

#include "host/database/datafolder.h"
#include "host/database/hostconnection.h"
#include "host/database/hostdatabase.h"
#include "host/sample/sampledata.h"
#include "host/sample/samplejob.h"

#include <QSignalSpy>

namespace {

const QDateTime noon(QDate(2026, 3, 14), QTime(9, 0), Qt::UTC);

bool goOn(int)
{
    return true;
}

} // namespace

/// What the host's made-up past promises to those who try the module on it.
class TestSampleData final : public GarageTest
{
    Q_OBJECT

private slots:
    void theSampleHoldsAWholeTrack();
    void theSameSeedGivesTheSameTrack();
    void dueOpenAndGoodStatesAllOccur();
    void everythingLiesInThePastInTheSharedForm();
    void cancellingLeavesTheFileBlank();
    void aJobInTheBackgroundCanBeCancelled();
    void aJobThatCannotWriteSaysWhy();

private:
    SampleOutcome make(quint32 seed, const SampleProgress &progress = goOn);
    QString dump() const;
};

SampleOutcome TestSampleData::make(quint32 seed, const SampleProgress &progress)
{
    QFile::remove(home().databasePath());
    if (!HostDatabase::prepare(DataFolder::userDocuments()))
        return SampleOutcome::Failed;
    HostConnection connection(home().databasePath());
    return generateSampleData(connection, SampleKind::Sample, seed, noon, progress);
}

QString TestSampleData::dump() const
{
    const TestDatabase database(const_cast<TestSampleData *>(this)->home().databasePath(), false);
    QStringList lines;
    for (const QString table :
         {"cars", "host_cars", "personal", "laps", "maintainance", "service_operations", "service_reglament"})
        lines += database.rows("SELECT * FROM " + table);
    return lines.join('\n');
}

void TestSampleData::theSampleHoldsAWholeTrack()
{
    QCOMPARE(make(1), SampleOutcome::Done);
    const TestDatabase database(home().databasePath(), false);
    const auto count = [&](const QString &what) { return database.value("SELECT " + what).toInt(); };
    QCOMPARE(count("count(*) FROM cars"), 24);
    QVERIFY(count("count(DISTINCT name) FROM cars") >= 4);
    QCOMPARE(count("count(*) FROM service_operations"), 8);
    QCOMPARE(count("count(*) FROM service_reglament"), 8 * count("count(DISTINCT name) FROM cars"));
    QCOMPARE(count("count(*) FROM personal"), 10);
    QCOMPARE(count("count(DISTINCT service_code) FROM host_personal"), 10);
    QVERIFY(count("count(*) FROM laps") > 5000);
    QVERIFY(count("count(*) FROM host_cars WHERE available=0") > 0);
    QCOMPARE(count("count(*) FROM sqlite_master WHERE name='laps_by_car'"), 1);
}

void TestSampleData::theSameSeedGivesTheSameTrack()
{
    QCOMPARE(make(5), SampleOutcome::Done);
    const QString first = dump();
    QCOMPARE(make(5), SampleOutcome::Done);
    QVERIFY(dump() == first);
    QCOMPARE(make(6), SampleOutcome::Done);
    QVERIFY(dump() != first);
}

void TestSampleData::dueOpenAndGoodStatesAllOccur()
{
    for (quint32 seed = 0; seed < 8; ++seed) {
        QCOMPARE(make(seed), SampleOutcome::Done);
        const TestDatabase database(home().databasePath(), false);
        const QStringList states = database.rows(
            "SELECT m.operation_state, "
            "(SELECT count(*) FROM laps l WHERE l.car_id=m.car_id AND l.lap_timestamp>m.ot) > r.laps_limit "
            "FROM (SELECT car_id,operation_id,max(operation_time) AS ot,operation_state FROM maintainance "
            "GROUP BY car_id,operation_id) m JOIN cars c ON c.id=m.car_id "
            "JOIN service_reglament r ON r.model=c.name AND r.operation_id=m.operation_id "
            "WHERE r.laps_limit>0");
        QVERIFY(states.count("1|0") > 10);
        QVERIFY(states.count("1|1") > 2);
        QVERIFY(database
                    .value("SELECT count(*) FROM maintainance WHERE operation_state=0 AND "
                           "operation_id=-1")
                    .toInt()
                > 0);
        QVERIFY(database
                    .value("SELECT count(*) FROM maintainance WHERE operation_state=0 AND "
                           "operation_id>0")
                    .toInt()
                > 0);
    }
}

void TestSampleData::everythingLiesInThePastInTheSharedForm()
{
    QCOMPARE(make(3), SampleOutcome::Done);
    const TestDatabase database(home().databasePath(), false);
    const QString now = noon.toString(Qt::ISODateWithMs);
    QVERIFY(database.value("SELECT max(lap_timestamp) FROM laps").toString() < now);
    QVERIFY(database.value("SELECT max(operation_time) FROM maintainance").toString() < now);
    const QString form = "[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]T[0-9][0-9]:[0-9][0-9]:"
                         "[0-9][0-9].[0-9][0-9][0-9]Z";
    QCOMPARE(database.value("SELECT count(*) FROM laps WHERE lap_timestamp NOT GLOB ?", {form}).toInt(), 0);
    QCOMPARE(
        database.value("SELECT count(*) FROM maintainance WHERE operation_time NOT GLOB ?", {form}).toInt(),
        0);
    QCOMPARE(database.value("SELECT count(*) FROM laps WHERE datetime(lap_timestamp) IS NULL").toInt(), 0);
}

void TestSampleData::cancellingLeavesTheFileBlank()
{
    QCOMPARE(make(1, [](int) { return false; }), SampleOutcome::Cancelled);
    QVERIFY(HostDatabase::isBlank(DataFolder::userDocuments()));
    const TestDatabase connection(home().databasePath(), false);
    QCOMPARE(connection.value("SELECT count(*) FROM sqlite_master WHERE name='laps_by_car'").toInt(), 1);
}

void TestSampleData::aJobInTheBackgroundCanBeCancelled()
{
    QVERIFY(HostDatabase::prepare(DataFolder::userDocuments()));
    SampleJob job(home().databasePath(), SampleKind::Season, 1);
    QSignalSpy finished(&job, &SampleJob::finished);
    QSignalSpy progress(&job, &SampleJob::progress);
    connect(&job, &SampleJob::progress, this, [&job](int percent) {
        if (percent >= 2)
            job.cancel();
    });
    job.start();
    QVERIFY(finished.wait(30000));
    QCOMPARE(finished.first().first().value<SampleOutcome>(), SampleOutcome::Cancelled);
    QVERIFY(progress.count() >= 2);
    QVERIFY(HostDatabase::isBlank(DataFolder::userDocuments()));
}

void TestSampleData::aJobThatCannotWriteSaysWhy()
{
    home().createDatabaseFolder();
    SampleJob job(home().databasePath(), SampleKind::Sample, 1);
    QSignalSpy finished(&job, &SampleJob::finished);
    job.start();
    QVERIFY(finished.wait());
    QCOMPARE(finished.first().first().value<SampleOutcome>(), SampleOutcome::Failed);
    QVERIFY2(job.errorText().contains("cars"), qPrintable(job.errorText()));
}

GARAGE_TEST_WITHOUT_WINDOWS(TestSampleData)
#include "tst_sampledata.moc"
