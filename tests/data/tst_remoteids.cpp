#include "support/garagetest.h"
#include "support/loaderprobe.h"

/// Ids of the remote side are 64 bits wide; those of the log's records are not.
class TestRemoteIds : public GarageTest
{
    Q_OBJECT
private slots:
    void wideIdsAreStoredAndArchivedAsTheyCame();
    void anIdBeyond32BitsReadsAsNone_data();
    void anIdBeyond32BitsReadsAsNone();
    void onlyIntegersAreIds_data();
    void onlyIntegersAreIds();
};

namespace {

QJsonObject record(const QJsonValue &id, const char *comment)
{
    return {
        {"id", id}, {"carId", 1}, {"opId", 2}, {"opDoneDateTime", "2026-03-04T05:06Z"}, {"comment", comment}};
}

const QString selectRecords = "SELECT remote_id,comment FROM maintainance ORDER BY id";

} // namespace

void TestRemoteIds::wideIdsAreStoredAndArchivedAsTheyCame()
{
    const auto database = createDatabase();
    const qint64 first = 5000000001;
    const qint64 second = 5000000002;
    LoaderProbe probe;
    probe.updateService({record(first, "one"), record(second, "two")});
    probe.updateService({record(second, "two again")});
    QCOMPARE(database->rows(selectRecords), QStringList({"5000000001|one", "5000000002|two again"}));
    QCOMPARE(probe.last("remote_service_move_to_archive").value("idList"), QJsonValue(QJsonArray {second}));
    QCOMPARE(probe.log.size(), 2);
    QCOMPARE(probe.log.at(0).remoteId, noId);
    QCOMPARE(probe.log.at(1).remoteId, noId);
}

void TestRemoteIds::anIdBeyond32BitsReadsAsNone_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("read");
    QTest::newRow("largest") << "2147483647" << 2147483647;
    QTest::newRow("one more") << "2147483648" << noId;
    QTest::newRow("smallest") << "-2147483648" << -2147483647 - 1;
    QTest::newRow("one less") << "-2147483649" << noId;
    QTest::newRow("2^32 + 7") << "4294967303" << noId;
    QTest::newRow("largest of 64 bits") << "9223372036854775807" << noId;
    QTest::newRow("NULL") << "NULL" << noId;
    QTest::newRow("text") << "'x'" << noId;
    QTest::newRow("zero") << "0" << 0;
}

void TestRemoteIds::anIdBeyond32BitsReadsAsNone()
{
    QFETCH(QString, stored);
    const auto database = createDatabase();
    database->exec(
        QString("INSERT INTO maintainance (car_id,operation_id,remote_id) VALUES (1,2,%1)").arg(stored));
    LoaderProbe probe;
    probe.reload();
    QCOMPARE(probe.log.size(), 1);
    QTEST(probe.log.first().remoteId, "read");
}

void TestRemoteIds::onlyIntegersAreIds_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<QString>("stored");
    QTest::newRow("largest that JSON holds exactly") << QByteArray("9007199254740992") << "9007199254740992";
    QTest::newRow("negative") << QByteArray("-5000000001") << "-5000000001";
    QTest::newRow("fraction") << QByteArray("5.5") << "-1";
    QTest::newRow("huge") << QByteArray("1e300") << "-1";
    QTest::newRow("whole") << QByteArray("5e9") << "5000000000";
    QTest::newRow("text") << QByteArray("\"7\"") << "-1";
    QTest::newRow("null") << QByteArray("null") << "-1";
}

void TestRemoteIds::onlyIntegersAreIds()
{
    QFETCH(QByteArray, id);
    const auto database = createDatabase();
    LoaderProbe probe;
    const QJsonValue value = QJsonDocument::fromJson("[" + id + "]").array().first();
    probe.updateService({record(value, "")});
    QTEST(database->value("SELECT remote_id FROM maintainance").toString(), "stored");
}

GARAGE_TEST_WITHOUT_WINDOWS(TestRemoteIds)
#include "tst_remoteids.moc"
