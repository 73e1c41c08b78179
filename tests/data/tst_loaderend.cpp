#include "support/databaselock.h"
#include "support/faultyfiles.h"
#include "support/garagetest.h"
#include "support/loaderprobe.h"

#include <QElapsedTimer>
#include <QFile>

namespace {

constexpr int boundMs = 10000;

QJsonObject remoteRecord(int id)
{
    return {{"id", id}, {"carId", 1}, {"opId", 2}, {"opDoneDateTime", "2026-01-01T10:00Z"}};
}

const QString archived = "remote_service_move_to_archive";
const QString deleted = "remote_service_delete";

} // namespace

/// The loader's end during a lock, a long read or a long write, and what it announces of a
/// batch that could not be stored.
class TestLoaderEnd : public GarageTest
{
    Q_OBJECT
private slots:
    void initTestCase() { FaultyFiles::install(); }
    void aLockHeldForeverEndsWithinTheBound_data();
    void aLockHeldForeverEndsWithinTheBound();
    void aLockReleasedWithinTheBoundLosesNothing_data();
    void aLockReleasedWithinTheBoundLosesNothing();
    void aReadUnderALockEndsAtOnce();
    void aLongReadEndsAtOnce();
    void aLongWriteEndsWithinTheBound();
    void writesStillWaitWithoutLimitInNormalOperation();
    void aBatchThatWasNotStoredIsNotArchived_data();
    void aBatchThatWasNotStoredIsNotArchived();
    void aBatchWithAFailedStatementIsArchived();

private:
    enum Fault { RolledBack, NoJournal, FailedCommit, NoFolder, NoDatabase };

    static void replaceLapsByEndlessRows(const TestDatabase &database);
};

void TestLoaderEnd::replaceLapsByEndlessRows(const TestDatabase &database)
{
    database.exec("DROP TABLE laps");
    // Some minutes of reading.
    database.exec("CREATE VIEW laps AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE "
                  "i<1000000000) SELECT i AS lap_id,1 AS car_id,1 AS run_id,"
                  "'2026-02-01T10:00:00.000Z' AS lap_timestamp,40000 AS sum_sectors FROM n");
}

void TestLoaderEnd::aLockHeldForeverEndsWithinTheBound_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("workBeforeTheEndMs");
    QTest::newRow("the commit waits for a reader") << int(DatabaseLock::Shared) << 0;
    QTest::newRow("everybody waits") << int(DatabaseLock::Exclusive) << 0;
    QTest::newRow("the first attempt is under way") << int(DatabaseLock::Exclusive) << 4000;
}

void TestLoaderEnd::aLockHeldForeverEndsWithinTheBound()
{
    QFETCH(int, kind);
    QFETCH(int, workBeforeTheEndMs);
    const auto database = createDatabase();
    LoaderProbe probe;
    probe.reload();
    probe.sequence.clear();
    const DatabaseLock lock(home().databasePath(), DatabaseLock::Kind(kind), 60000);
    for (int id = 1; id <= 5; ++id) {
        emit probe.deleteRequested(id, -1);
        emit probe.reloadRequested();
        emit probe.updateRequested({remoteRecord(id)}, {});
    }
    QThread::msleep(ulong(workBeforeTheEndMs));
    QElapsedTimer timer;
    timer.start();
    probe.destroyLoader();
    QVERIFY2(timer.elapsed() < boundMs, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(lock.isHeld());
    QCoreApplication::processEvents();
    QCOMPARE(probe.sequence, QStringList());
}

void TestLoaderEnd::aLockReleasedWithinTheBoundLosesNothing_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("the commit waits for a reader") << int(DatabaseLock::Shared);
    QTest::newRow("everybody waits") << int(DatabaseLock::Exclusive);
}

void TestLoaderEnd::aLockReleasedWithinTheBoundLosesNothing()
{
    QFETCH(int, kind);
    const auto database = createDatabase();
    const int id = database->addRecord(1, 2, "2026-01-01T10:00Z", DoneState);
    LoaderProbe probe;
    probe.reload();
    probe.sequence.clear();
    {
        const DatabaseLock lock(home().databasePath(), DatabaseLock::Kind(kind), 8000);
        emit probe.deleteRequested(id, -1);
        emit probe.updateRequested({remoteRecord(40)}, {});
        QElapsedTimer timer;
        timer.start();
        probe.destroyLoader();
        QVERIFY2(timer.elapsed() < boundMs, qPrintable(QString::number(timer.elapsed())));
    }
    QCOMPARE(database->rows("SELECT remote_id FROM maintainance"), QStringList("40"));
    QCoreApplication::processEvents();
    QCOMPARE(probe.sequence, QStringList({deleted, archived}));
}

void TestLoaderEnd::aReadUnderALockEndsAtOnce()
{
    const auto database = createDatabase();
    LoaderProbe probe;
    probe.reload();
    const DatabaseLock lock(home().databasePath(), DatabaseLock::Exclusive, 60000);
    emit probe.reloadRequested();
    QThread::msleep(300);
    QElapsedTimer timer;
    timer.start();
    probe.destroyLoader();
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
}

void TestLoaderEnd::aLongReadEndsAtOnce()
{
    const auto database = createDatabase();
    database->addCar(1, "7", "Kart");
    database->addRecord(1, 2, "2026-01-01T10:00Z", DoneState);
    replaceLapsByEndlessRows(*database);
    LoaderProbe probe;
    emit probe.reloadRequested();
    emit probe.updateRequested({remoteRecord(40)}, {});
    while (!takeDebugLines().join('\n').contains("step 0 start "))
        QThread::msleep(5);
    QThread::msleep(300);
    QElapsedTimer timer;
    timer.start();
    probe.destroyLoader();
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 2);
    QCoreApplication::processEvents();
    QCOMPARE(probe.sequence, QStringList(archived));
}

void TestLoaderEnd::aLongWriteEndsWithinTheBound()
{
    const auto database = createDatabase();
    const int id = database->addRecord(1, 2, "2026-01-01T10:00Z", DoneState);
    replaceLapsByEndlessRows(*database);
    database->exec("CREATE TRIGGER slow BEFORE DELETE ON maintainance BEGIN "
                   "SELECT count(*) FROM laps; END");
    LoaderProbe probe;
    probe.sequence.clear();
    emit probe.deleteRequested(id, -1);
    QElapsedTimer timer;
    timer.start();
    probe.destroyLoader();
    QVERIFY2(timer.elapsed() < boundMs, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(probe.sequence, QStringList());
}

void TestLoaderEnd::writesStillWaitWithoutLimitInNormalOperation()
{
    const auto database = createDatabase();
    const int id = database->addRecord(1, 2, "2026-01-01T10:00Z", DoneState);
    LoaderProbe probe;
    probe.reload();
    const DatabaseLock lock(home().databasePath(), DatabaseLock::Exclusive, 11000);
    probe.deleteOperation(id, -1);
    QVERIFY(!lock.isHeld());
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 0);
}

void TestLoaderEnd::aBatchThatWasNotStoredIsNotArchived_data()
{
    QTest::addColumn<int>("fault");
    QTest::newRow("SQLite ends the transaction in a statement") << int(RolledBack);
    QTest::newRow("the journal cannot be created") << int(NoJournal);
    QTest::newRow("the commit fails") << int(FailedCommit);
    QTest::newRow("there is no folder") << int(NoFolder);
    QTest::newRow("the file is no database") << int(NoDatabase);
}

void TestLoaderEnd::aBatchThatWasNotStoredIsNotArchived()
{
    QFETCH(int, fault);
    FaultyFiles::clear();
    std::unique_ptr<TestDatabase> database;
    if (fault != NoFolder)
        database = createDatabase();
    if (fault == RolledBack)
        database->exec("CREATE TRIGGER fault BEFORE INSERT ON maintainance WHEN new.remote_id=41 BEGIN "
                       "SELECT RAISE(ROLLBACK,'injected'); END");
    if (fault == NoDatabase) {
        database.reset();
        QFile file(home().databasePath());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(QByteArray("no database at all ").repeated(1000));
    }
    LoaderProbe probe;
    probe.reload();
    if (fault == NoJournal)
        FaultyFiles::fail(FaultyFiles::OpenJournal, 1, FaultyFiles::UntilCleared);
    if (fault == FailedCommit)
        FaultyFiles::fail(FaultyFiles::Sync, 1, FaultyFiles::UntilCleared);
    emit probe.updateRequested({remoteRecord(40), remoteRecord(41)}, {});
    QVERIFY(probe.waitForReloads(2));
    // Answers come in order: what there was to send about the batch has been sent before the next reload.
    probe.reload();
    QVERIFY2(!probe.sequence.contains(archived), qPrintable(probe.sequence.join(' ')));
    QCOMPARE(probe.reloads, 3);
    FaultyFiles::clear();
    if (database) {
        QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 0);
        database->exec("DROP TRIGGER IF EXISTS fault");
        probe.updateService({remoteRecord(40), remoteRecord(41)});
        QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 2);
    }
}

void TestLoaderEnd::aBatchWithAFailedStatementIsArchived()
{
    const auto database = createDatabase();
    database->exec("CREATE TRIGGER fault BEFORE INSERT ON maintainance WHEN new.remote_id=41 BEGIN SELECT "
                   "RAISE(ABORT,'injected'); END");
    LoaderProbe probe;
    probe.updateService({remoteRecord(40), remoteRecord(41)});
    QCOMPARE(probe.last(archived).value("idList").toArray(), QJsonArray({40, 41}));
    QCOMPARE(database->rows("SELECT remote_id FROM maintainance"), QStringList("40"));
}

GARAGE_TEST_WITHOUT_WINDOWS(TestLoaderEnd)
#include "tst_loaderend.moc"
