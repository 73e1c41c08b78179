#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/json.h"
#include "support/loaderprobe.h"

#include <QDir>

namespace {

const QStringList allMarkers {"step 0 start ", "step 1 done ", "step 2 done ", "step 3 done ",
                              "step 4 done "};

QJsonObject remoteRecord(int id, const QString &time, const QString &comment)
{
    return {{"id", id},
            {"carId", 1},
            {"opId", 2},
            {"opDoneDateTime", time},
            {"operatorName", "Пётр"},
            {"operatorId", 5},
            {"comment", comment}};
}

} // namespace

/// The loader's answers, its writes, its behaviour on a locked or missing database, and its end.
class TestGarageUpdater : public GarageTest
{
    Q_OBJECT
private slots:
    void aReloadSendsThePendingListBeforeTheRecords();
    void theDueListFollowsTheEleventhLap();
    void anOpenComplaintIsListedUntilALaterOneIsDone();
    void aCarWithoutRecordsIsStillReported();
    void onlyLaterLapsWithATimeCount();
    void theJournalNamesPeopleAndForgottenCars();
    void reloadsAreMarkedStepByStep();
    void aDatabaseThatCannotBeReadStillAnswers_data();
    void aDatabaseThatCannotBeReadStillAnswers();
    void aMissingTableLeavesOnlyItsOwnResultEmpty_data();
    void aMissingTableLeavesOnlyItsOwnResultEmpty();
    void aDatabaseThatAppearsLaterIsUsed();
    void aDeletionTellsTheHostAndReloads_data();
    void aDeletionTellsTheHostAndReloads();
    void remoteRecordsAreStoredThenReportedThenArchived();
    void readsWaitForAnExclusiveLock();
    void writesWaitForALock();
    void destructionRunsPendingWritesButNoReloads();
    void theEndIsNotHeldUpByALock();
    void loadersComeAndGoInTheMiddleOfReloads();
    void typesCrossThreadsUnderTheirNames();
};

void TestGarageUpdater::aReloadSendsThePendingListBeforeTheRecords()
{
    const auto database = createDatabase();
    database->addCar(1, "7", "Kart");
    database->addOperation(2, "Масло");
    LoaderProbe probe;
    probe.reload();
    QCOMPARE(probe.sequence, QStringList({"update_pending_service", "garageStatsUpdated"}));
    QCOMPARE(probe.messages.first().module, "garage_stats_updater");
    QCOMPARE(probe.operations, ServiceOperations({{2, "Масло"}}));
}

void TestGarageUpdater::theDueListFollowsTheEleventhLap()
{
    const auto database = createDatabase();
    database->addCar(1, "7", "Kart");
    database->addCar(2, "8", "Kart");
    database->addOperation(2, "Масло");
    database->addLimit("Kart", 2, 0, 0, 10);
    const int localId = database->addRecord(1, 2, "2026-01-01T10:00:00.000Z", DoneState);
    LoaderProbe probe;
    for (int lap = 1; lap <= 11; ++lap) {
        database->addLap(1, (lap + 4) / 5,
                         QString("2026-01-02T10:%1:00.000Z").arg(lap, 2, 10, QLatin1Char('0')), 61500);
        probe.reload();
        const QJsonObject data = probe.last("update_pending_service");
        QJsonArray expectedPending;
        if (lap == 11) {
            expectedPending.append(QJsonObject {{"carId", 1},
                                                {"carNum", "7"},
                                                {"carModel", "Kart"},
                                                {"opId", 2},
                                                {"opName", "Масло"},
                                                {"opDateTime", "2026-01-01T10:00"},
                                                {"localId", localId}});
        }
        const QJsonObject status {
            {"tt", lap * 61500 / 1000}, {"tl", lap}, {"tr", (lap + 4) / 5}, {"dt", "2026-01-01T10:00"}};
        const QJsonArray expectedStatus {
            QJsonObject {{"carId", 1}, {"opsStatus", QJsonObject {{"2", status}}}},
            json(R"({"carId": 2, "opsStatus": {}})")};
        QCOMPARE(
            data,
            QJsonObject({{"servicePendingList", expectedPending}, {"maintainanceStatus", expectedStatus}}));
    }
}

void TestGarageUpdater::anOpenComplaintIsListedUntilALaterOneIsDone()
{
    const auto database = createDatabase();
    database->addCar(1, "7", "Kart");
    const int localId = database->addRecord(1, -1, "2026-01-01T10:00:00.000Z", OpenState, "Стук");
    LoaderProbe probe;
    probe.reload();
    const QJsonArray pending = probe.last("update_pending_service").value("servicePendingList").toArray();
    QCOMPARE(pending,
             QJsonArray({QJsonObject({{"carId", 1},
                                      {"carNum", "7"},
                                      {"carModel", "Kart"},
                                      {"opId", -1},
                                      {"opName", "Стук"},
                                      {"opDateTime", "2026-01-01T10:00"},
                                      {"localId", localId}})}));

    database->addRecord(1, -1, "2026-01-01T11:00Z", DoneState);
    probe.reload();
    QVERIFY(probe.last("update_pending_service").value("servicePendingList").toArray().isEmpty());
}

void TestGarageUpdater::aCarWithoutRecordsIsStillReported()
{
    const auto database = createDatabase();
    database->addCar(5, "1", "Kart");
    LoaderProbe probe;
    probe.reload();
    QCOMPARE(probe.cars.size(), 1);
    QVERIFY(probe.cars.first().ops.isEmpty());
    QCOMPARE(probe.last("update_pending_service").value("maintainanceStatus").toArray(),
             QJsonArray({json(R"({"carId": 5, "opsStatus": {}})")}));
}

void TestGarageUpdater::onlyLaterLapsWithATimeCount()
{
    const auto database = createDatabase();
    database->addCar(1, "7", "Kart");
    database->addRecord(1, 2, "2026-01-01T10:00:00.000Z", DoneState);
    database->addLap(1, 1, "2026-01-01T10:00:00.000Z", 60000); // not later
    database->addLap(1, 1, "2026-01-01T10:00:01.000Z", 0);
    database->addLap(1, 1, "2026-01-01T10:00:02.000Z", -5);
    database->addLap(2, 1, "2026-01-01T10:00:03.000Z", 60000); // another car
    database->addLap(1, 3, "2026-01-01T10:00:04.000Z", 1999);
    LoaderProbe probe;
    probe.reload();
    const OperationStat stat = probe.cars.first().ops.value(2);
    QCOMPARE(stat.totalTime, 1);
    QCOMPARE(stat.laps, 1);
    QCOMPARE(stat.runs, 1);
    QCOMPARE(stat.lastDone.toLocalTime(), QDateTime(QDate(2026, 1, 1), QTime(10, 0), Qt::UTC));
    QCOMPARE(stat.lastDone.toLocalTime().timeSpec(), Qt::LocalTime);
}

void TestGarageUpdater::theJournalNamesPeopleAndForgottenCars()
{
    const auto database = createDatabase();
    database->addCar(1, "7", "Kart");
    database->addOperation(2, "Масло");
    database->exec("INSERT INTO personal VALUES (1,'Иванов','Иван','Иванович'),(2,'Петров','Пётр',NULL)");
    database->exec(
        "INSERT INTO maintainance (id,car_id,operation_id,operation_time,person_id,person_name,comment,"
        "operation_state,remote_id) VALUES (1,1,2,'2026-01-03T10:00Z',1,'x','a',1,NULL),"
        "(2,9,-1,'2026-01-02T10:00Z',2,'Петров "
        "П.','b',0,77),(3,1,-1,'2026-01-01T10:00Z',-1,'','c',1,'none')");
    LoaderProbe probe;
    probe.reload();
    QCOMPARE(probe.log.size(), 3);
    const ServiceLogItem done = probe.log.at(0);
    QCOMPARE(done.id, 1);
    QCOMPARE(done.personName, "Иванов Иван Иванович");
    QCOMPARE(done.opName, "Масло");
    QCOMPARE(done.num, "7");
    QCOMPARE(done.remoteId, -1);
    const ServiceLogItem complaint = probe.log.at(1);
    QCOMPARE(complaint.personName, "Петров П.");
    QCOMPARE(complaint.carId, 9);
    QCOMPARE(complaint.num, QString());
    QCOMPARE(complaint.opName, QString());
    QCOMPARE(complaint.opId, -1);
    QCOMPARE(complaint.state, int(OpenState));
    QCOMPARE(complaint.remoteId, 77);
    QCOMPARE(complaint.opTime.toLocalTime().timeSpec(), Qt::LocalTime);
    QCOMPARE(probe.log.at(2).remoteId, -1);
}

void TestGarageUpdater::reloadsAreMarkedStepByStep()
{
    const auto database = createDatabase();
    LoaderProbe probe;
    probe.reload();
    const QStringList lines = takeDebugLines();
    QCOMPARE(lines.size(), allMarkers.size());
    for (int i = 0; i < lines.size(); ++i) {
        QVERIFY2(lines.at(i).startsWith(allMarkers.at(i)), qPrintable(lines.at(i)));
        QVERIFY(lines.at(i).contains(QString::number(QDate::currentDate().year())));
    }
}

void TestGarageUpdater::aDatabaseThatCannotBeReadStillAnswers_data()
{
    QTest::addColumn<QString>("state");
    for (const char *state : {"no folder", "no file", "empty file", "garbage file", "a folder in its place"})
        QTest::newRow(state) << state;
}

void TestGarageUpdater::aDatabaseThatCannotBeReadStillAnswers()
{
    QFETCH(QString, state);
    if (state != "no folder")
        home().createDatabaseFolder();
    QFile file(home().databasePath());
    if (state == "empty file")
        QVERIFY(file.open(QIODevice::WriteOnly));
    if (state == "garbage file") {
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("no database at all ").repeated(1000));
    }
    if (state == "a folder in its place")
        QVERIFY(QDir().mkdir(home().databasePath()));
    file.close();

    LoaderProbe probe;
    probe.reload();
    probe.deleteOperation(1, 2);
    emit probe.updateRequested({remoteRecord(1, "2026-01-01T10:00Z", {})}, {});
    QVERIFY(probe.waitForReloads(3));
    QVERIFY(probe.cars.isEmpty());
    QCOMPARE(probe.last("update_pending_service"),
             json(R"({"servicePendingList": [], "maintainanceStatus": []})"));
    QCOMPARE(takeDebugLines().size(), 3 * allMarkers.size());
}

void TestGarageUpdater::aMissingTableLeavesOnlyItsOwnResultEmpty_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<bool>("cars");
    QTest::addColumn<bool>("driving");
    QTest::addColumn<bool>("log");
    QTest::addColumn<bool>("operations");
    QTest::newRow("cars") << "cars" << false << false << false << true;
    QTest::newRow("maintainance") << "maintainance" << true << false << false << true;
    QTest::newRow("laps") << "laps" << true << false << true << true;
    QTest::newRow("service_operations") << "service_operations" << true << true << false << false;
    QTest::newRow("service_reglament") << "service_reglament" << true << true << true << true;
    QTest::newRow("personal") << "personal" << true << true << false << true;
}

void TestGarageUpdater::aMissingTableLeavesOnlyItsOwnResultEmpty()
{
    QFETCH(QString, table);
    const auto database = createDatabase();
    database->addCar(1, "7", "Kart");
    database->addOperation(2, "Масло");
    database->addRecord(1, 2, "2026-01-01T10:00Z", DoneState);
    database->exec("DROP TABLE " + table);
    LoaderProbe probe;
    probe.reload();
    QTEST(!probe.cars.isEmpty(), "cars");
    QTEST(!probe.cars.isEmpty() && !probe.cars.first().ops.isEmpty(), "driving");
    QTEST(!probe.log.isEmpty(), "log");
    QTEST(!probe.operations.isEmpty(), "operations");
}

void TestGarageUpdater::aDatabaseThatAppearsLaterIsUsed()
{
    LoaderProbe probe;
    probe.reload();
    QVERIFY(probe.cars.isEmpty());
    const auto database = createDatabase();
    database->addCar(1, "7", "Kart");
    probe.reload();
    QCOMPARE(probe.cars.size(), 1);
}

void TestGarageUpdater::aDeletionTellsTheHostAndReloads_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("remoteId");
    QTest::addColumn<QString>("left");
    QTest::newRow("a local record") << 1 << -1 << "2";
    QTest::newRow("a remote record") << 2 << 40 << "1";
    QTest::newRow("one that does not exist") << 99 << -1 << "1,2";
}

void TestGarageUpdater::aDeletionTellsTheHostAndReloads()
{
    QFETCH(int, id);
    QFETCH(int, remoteId);
    const auto database = createDatabase();
    database->addRecord(1, 2, "2026-01-01T10:00Z", DoneState);
    database->addRecord(1, 3, "2026-01-01T10:00Z", DoneState);
    LoaderProbe probe;
    probe.deleteOperation(id, remoteId);
    QTEST(database->value("SELECT group_concat(id) FROM maintainance").toString(), "left");
    QCOMPARE(probe.sequence,
             QStringList({"remote_service_delete", "update_pending_service", "garageStatsUpdated"}));
    QCOMPARE(probe.messages.first().module, "garage_stats_updater");
    QCOMPARE(probe.messages.first().data, QJsonObject({{"remoteId", remoteId}, {"localId", id}}));
}

void TestGarageUpdater::remoteRecordsAreStoredThenReportedThenArchived()
{
    const auto database = createDatabase();
    LoaderProbe probe;
    probe.updateService(
        {remoteRecord(10, "2026-01-01T10:00Z", "первая"), remoteRecord(11, "2026-01-02T10:00Z", "вторая")});
    QCOMPARE(probe.sequence,
             QStringList({"update_pending_service", "garageStatsUpdated", "remote_service_move_to_archive"}));
    QCOMPARE(probe.messages.last().module, "garage_stats_updater");
    QCOMPARE(probe.messages.last().data, json(R"({"idList": [10, 11]})"));
    QCOMPARE(database->rows(
                 "SELECT "
                 "remote_id,car_id,operation_id,operation_time,person_id,person_name,comment,operation_state "
                 "FROM maintainance ORDER BY id"),
             QStringList(
                 {"10|1|2|2026-01-01T10:00Z|5|Пётр|первая|1", "11|1|2|2026-01-02T10:00Z|5|Пётр|вторая|1"}));
    QCOMPARE(probe.log.size(), 2);
}

void TestGarageUpdater::readsWaitForAnExclusiveLock()
{
    const auto database = createDatabase();
    database->addCar(1, "7", "Kart");
    LoaderProbe probe;
    probe.reload();
    const DatabaseLock lock(home().databasePath(), DatabaseLock::Exclusive, 700);
    probe.reload();
    QVERIFY(!lock.isHeld());
    QCOMPARE(probe.cars.size(), 1);
}

void TestGarageUpdater::writesWaitForALock()
{
    const auto database = createDatabase();
    const int id = database->addRecord(1, 2, "2026-01-01T10:00Z", DoneState);
    LoaderProbe probe;
    // Longer than one attempt waits, so that the write is repeated.
    const DatabaseLock lock(home().databasePath(), DatabaseLock::Immediate, 6000);
    probe.deleteOperation(id, -1);
    QVERIFY(!lock.isHeld());
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 0);
}

void TestGarageUpdater::destructionRunsPendingWritesButNoReloads()
{
    const auto database = createDatabase();
    for (int i = 0; i < 20; ++i)
        database->addRecord(1, 2, "2026-01-01T10:00Z", DoneState);
    LoaderProbe probe;
    for (int id = 1; id <= 20; ++id) {
        emit probe.reloadRequested();
        emit probe.deleteRequested(id, -1);
    }
    emit probe.updateRequested({remoteRecord(10, "2026-01-01T10:00Z", {})}, {});
    probe.destroyLoader();
    QCOMPARE(database->rows("SELECT remote_id FROM maintainance"), QStringList("10"));
    QVERIFY(takeDebugLines().size() < 10 * allMarkers.size());
}

void TestGarageUpdater::theEndIsNotHeldUpByALock()
{
    const auto database = createDatabase();
    LoaderProbe probe;
    probe.reload();
    const DatabaseLock lock(home().databasePath(), DatabaseLock::Immediate, 60000);
    for (int id = 1; id <= 10; ++id)
        emit probe.deleteRequested(id, -1);
    QElapsedTimer timer;
    timer.start();
    probe.destroyLoader();
    QVERIFY2(timer.elapsed() < 10500, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(lock.isHeld());
}

void TestGarageUpdater::loadersComeAndGoInTheMiddleOfReloads()
{
    const auto database = createDatabase();
    database->addCar(1, "7", "Kart");
    for (int round = 0; round < 100; ++round) {
        LoaderProbe probe;
        emit probe.reloadRequested();
        emit probe.reloadRequested();
        if (round % 3 == 0)
            QVERIFY(probe.waitForReloads(1));
    }
    QVERIFY(!QSqlDatabase::connectionNames().contains("garageStatsLoader"));
    LoaderProbe probe;
    probe.reload();
    QCOMPARE(probe.cars.size(), 1);
}

void TestGarageUpdater::typesCrossThreadsUnderTheirNames()
{
    const LoaderProbe probe;
    for (const char *name : {"QList<MaintainanceModel::MaintainanceItem>",
                             "QList<ServiceLogModel::ServiceLogItem>", "QMap<int,String>"})
        QVERIFY2(QMetaType::type(name) != QMetaType::UnknownType, name);
    const QMetaObject &meta = GarageUpdater::staticMetaObject;
    const QByteArrayList expected {"garageStatsUpdated(QList<MaintainanceModel::MaintainanceItem>,QList<"
                                   "ServiceLogModel::ServiceLogItem>,"
                                   "QMap<int,QString>)",
                                   "pluginSignal(QString,QString,QJsonObject)", "reloadStats()",
                                   "updateService(QJsonArray,QJsonArray)", "deleteOperation(int,int)"};
    for (int i = 0; i < expected.size(); ++i)
        QCOMPARE(meta.method(meta.methodOffset() + i).methodSignature(), expected.at(i));
    QCOMPARE(meta.methodCount() - meta.methodOffset(), expected.size());
}

GARAGE_TEST_WITHOUT_WINDOWS(TestGarageUpdater)
#include "tst_garageupdater.moc"
