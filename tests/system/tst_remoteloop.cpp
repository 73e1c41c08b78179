#include "support/garagetest.h"

#include "host/app/demohost.h"
#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"
#include "host/sample/sampledata.h"

#include <QJsonArray>
#include <QSignalSpy>

#include <algorithm>
#include <memory>

/// The remote side and the real plug-in, connected by the host.
class TestRemoteLoop final : public GarageTest
{
    Q_OBJECT

private slots:
    void anOpenComplaintDoneRemotelyIsClosedAndArchived_data();
    void anOpenComplaintDoneRemotelyIsClosedAndArchived();
    void overdueWorkDoneRemotelyIsANewRecord();
    void recordsWaitUntilThePluginAsks();
    void aJournalRecordMarkedDoneComesBackOnce();
    void theRemoteSideFollowsDeletions();
    void aServiceRecordedAtTheTrackIsDeletedOnTheRemoteSideToo();
    void aDeletionSparesWhatIsOnItsWay();
    void aMissingArchiveRowIsFound();
    void anUnreadableTrackIsNeitherCheckedNorGivenWork();
    void newRecordsNeverTakeAnIdThatTheTrackKnows();
    void carsAreSwitchedFromAfar();

private:
    std::unique_ptr<DemoHost> makeHost();
    std::unique_ptr<TestDatabase> openTrack()
    {
        return std::make_unique<TestDatabase>(home().databasePath(), false);
    }
    static const PendingService *find(DemoHost &host, bool complaint);
    static QJsonObject lastHeard(DemoHost &host, const QString &event);
};

std::unique_ptr<DemoHost> TestRemoteLoop::makeHost()
{
    const DataFolder documents = DataFolder::userDocuments();
    if (!HostDatabase::prepare(documents))
        qFatal("no database");
    if (HostDatabase::isBlank(documents)) {
        HostConnection connection(documents.databasePath());
        generateSampleData(connection, SampleKind::Sample, 1, QDateTime::currentDateTimeUtc(),
                           [](int) { return true; });
    }
    auto host = std::make_unique<DemoHost>(documents, 1);
    const Result loaded = host->plugin().load(GARAGE_PLUGIN);
    if (!loaded || !host->remote().prepare())
        qFatal("%s", qPrintable(loaded.errorText()));
    QSignalSpy pending(&host->remote(), &RemoteSide::pendingChanged);
    host->fleet().sendStartSequence();
    if (!pending.wait())
        qFatal("no due list");
    return host;
}

/// The first complaint, or the first overdue operation, of the due list.
const PendingService *TestRemoteLoop::find(DemoHost &host, bool complaint)
{
    const QVector<PendingService> &list = host.remote().pending();
    const auto found = std::find_if(
        list.begin(), list.end(), [=](const PendingService &work) { return (work.opId == -1) == complaint; });
    return found == list.end() ? nullptr : &*found;
}

QJsonObject TestRemoteLoop::lastHeard(DemoHost &host, const QString &event)
{
    for (int row = host.messageLog().rowCount() - 1; row >= 0; --row) {
        if (host.messageLog().entry(row).event == event)
            return host.messageLog().entry(row).data();
    }
    return {};
}

void TestRemoteLoop::anOpenComplaintDoneRemotelyIsClosedAndArchived_data()
{
    QTest::addColumn<bool>("byRemoteControl");
    QTest::newRow("web service") << false;
    QTest::newRow("remote control") << true;
}

void TestRemoteLoop::anOpenComplaintDoneRemotelyIsClosedAndArchived()
{
    QFETCH(const bool, byRemoteControl);
    const std::unique_ptr<DemoHost> host = makeHost();
    QVERIFY(find(*host, true));
    const PendingService complaint = *find(*host, true);
    const HostPerson person = host->fleet().people().list().first();
    const int rows = openTrack()->value("SELECT count(*) FROM maintainance").toInt();
    host->remote().complete(complaint, person, "исправлено",
                            byRemoteControl ? RemoteSide::Channel::RemoteControl
                                            : RemoteSide::Channel::Service);
    QTRY_COMPARE(host->remote().store().count(RemoteRecord::Archived), 1);
    QVERIFY(host->remote().checkArchive().isGood());
    const std::unique_ptr<TestDatabase> track = openTrack();
    QCOMPARE(track->value("SELECT count(*) FROM maintainance").toInt(), rows);
    QCOMPARE(track->rows(QString("SELECT operation_state,comment,person_id FROM maintainance WHERE id=%1")
                             .arg(complaint.localId)),
             QStringList {QString("1|исправлено|%1").arg(person.id)});
    for (const PendingService &work : host->remote().pending())
        QVERIFY(work.localId != complaint.localId);
}

void TestRemoteLoop::overdueWorkDoneRemotelyIsANewRecord()
{
    const std::unique_ptr<DemoHost> host = makeHost();
    const std::unique_ptr<TestDatabase> track = openTrack();
    const QVector<PendingService> list = host->remote().pending();
    const auto overdue = std::find_if(list.begin(), list.end(), [&](const PendingService &work) {
        return track->value("SELECT operation_state FROM maintainance WHERE id=?", {work.localId}).toInt()
            == 1;
    });
    QVERIFY(overdue != list.end());
    const QStringList before = track->rows("SELECT * FROM maintainance");
    host->remote().complete(*overdue, host->fleet().people().list().first(), QString(),
                            RemoteSide::Channel::Service);
    QTRY_COMPARE(host->remote().store().count(RemoteRecord::Archived), 1);
    const QStringList after = track->rows("SELECT * FROM maintainance");
    QCOMPARE(after.size(), before.size() + 1);
    QCOMPARE(after.mid(0, before.size()), before);
    for (const PendingService &work : host->remote().pending())
        QVERIFY(work.carId != overdue->carId || work.opId != overdue->opId);
}

void TestRemoteLoop::recordsWaitUntilThePluginAsks()
{
    std::unique_ptr<DemoHost> host = makeHost();
    host->remote().setSendsAtOnce(false);
    host->remote().complete(*find(*host, true), {}, QString(), RemoteSide::Channel::Service);
    QCOMPARE(host->remote().store().count(RemoteRecord::Waiting), 1);
    host.reset();
    host = makeHost();
    QTRY_COMPARE(host->remote().store().count(RemoteRecord::Archived), 1);
    QVERIFY(host->remote().checkArchive().isGood());
}

void TestRemoteLoop::aJournalRecordMarkedDoneComesBackOnce()
{
    const std::unique_ptr<DemoHost> host = makeHost();
    const PendingService complaint = *find(*host, true);
    const int rows = openTrack()->value("SELECT count(*) FROM maintainance").toInt();
    emit host->plugin().received({"garage_plugin",
                                  "add_remote_service",
                                  {{"carId", complaint.carId},
                                   {"opId", -1},
                                   {"opDoneDateTime", "2026-03-01T10:20Z"},
                                   {"operatorName", "Пётр"},
                                   {"localId", complaint.localId},
                                   {"updateFromLocal", true}}});
    QTRY_COMPARE(host->remote().store().count(RemoteRecord::Archived), 1);
    const std::unique_ptr<TestDatabase> track = openTrack();
    QCOMPARE(track->value("SELECT count(*) FROM maintainance").toInt(), rows);
    QCOMPARE(
        track->rows(QString("SELECT operation_time,person_name,operation_state FROM maintainance WHERE id=%1")
                        .arg(complaint.localId)),
        QStringList {"2026-03-01T10:20:00.000Z|Пётр|1"});
}

void TestRemoteLoop::theRemoteSideFollowsDeletions()
{
    const std::unique_ptr<DemoHost> host = makeHost();
    const PendingService complaint = *find(*host, true);
    host->remote().complete(complaint, {}, QString(), RemoteSide::Channel::Service);
    QTRY_COMPARE(host->remote().store().count(RemoteRecord::Archived), 1);
    openTrack()->exec("DELETE FROM maintainance WHERE id=?", {complaint.localId});
    emit host->plugin().received({"garage_stats_updater",
                                  "remote_service_delete",
                                  {{"remoteId", -1}, {"localId", complaint.localId}}});
    QTRY_COMPARE(host->remote().store().count(RemoteRecord::Deleted), 1);
    QVERIFY(host->remote().checkArchive().isGood());
}

void TestRemoteLoop::aServiceRecordedAtTheTrackIsDeletedOnTheRemoteSideToo()
{
    const std::unique_ptr<DemoHost> host = makeHost();
    const std::unique_ptr<TestDatabase> track = openTrack();
    const int id = track->addRecord(101, 1, "2026-03-01T10:20:31.500Z", 1);
    track->addRecord(101, 1, "2026-03-01T10:25:00.000Z", 1);
    emit host->plugin().received(
        {"garage_plugin",
         "add_remote_service",
         {{"carId", 101}, {"opId", 1}, {"opName", "Замена масла"}, {"opTime", "2026-03-01 10:20"}}});
    QTRY_COMPARE(host->remote().store().count(RemoteRecord::Kept), 1);
    emit host->plugin().received(
        {"garage_stats_updater", "remote_service_delete", {{"remoteId", -1}, {"localId", id}}});
    QTRY_COMPARE(host->remote().store().count(RemoteRecord::Deleted), 1);
}

void TestRemoteLoop::aDeletionSparesWhatIsOnItsWay()
{
    const std::unique_ptr<DemoHost> host = makeHost();
    RemoteStore &store = host->remote().store();
    RemoteRecord record;
    record.localId = 7;
    record.state = RemoteRecord::Sent;
    const int sent = store.add(record);
    record.state = RemoteRecord::Waiting;
    store.add(record);

    QVERIFY(store.markDeleted(-1, 7));
    QCOMPARE(store.count(RemoteRecord::Sent), 1);
    QCOMPARE(store.count(RemoteRecord::Deleted), 1);

    // It was stored as a record of its own; that the other is deleted may be said twice.
    QVERIFY(store.setState({sent}, RemoteRecord::Archived));
    QVERIFY(store.markDeleted(-1, 7));
    QCOMPARE(store.count(RemoteRecord::Archived), 1);
    QVERIFY(store.markDeleted(sent, 8));
    QCOMPARE(store.count(RemoteRecord::Archived), 0);
}

void TestRemoteLoop::aMissingArchiveRowIsFound()
{
    const std::unique_ptr<DemoHost> host = makeHost();
    const PendingService complaint = *find(*host, true);
    host->remote().complete(complaint, {}, QString(), RemoteSide::Channel::Service);
    QTRY_COMPARE(host->remote().store().count(RemoteRecord::Archived), 1);
    openTrack()->exec("DELETE FROM maintainance WHERE id=?", {complaint.localId});
    const ArchiveFindings findings = host->remote().checkArchive();
    QVERIFY(!findings.isGood());
    QCOMPARE(findings.missing, QVector<int> {1});
}

void TestRemoteLoop::anUnreadableTrackIsNeitherCheckedNorGivenWork()
{
    const std::unique_ptr<DemoHost> host = makeHost();
    RemoteRecord archived;
    archived.state = RemoteRecord::Archived;
    host->remote().store().add(archived);
    const PendingService *complaint = find(*host, true);
    QVERIFY(complaint);
    const std::unique_ptr<TestDatabase> track = openTrack();
    track->exec("ALTER TABLE maintainance RENAME TO hidden");
    const ArchiveFindings findings = host->remote().checkArchive();
    QVERIFY(!findings.isGood());
    QVERIFY(!findings.errorText.isEmpty());
    QCOMPARE(findings.missing, QVector<int>());
    QVERIFY(!host->remote().complete(*complaint, HostPerson(), QString(), RemoteSide::Channel::Service));
    QCOMPARE(host->remote().store().latest(10).size(), 1);
    track->exec("ALTER TABLE hidden RENAME TO maintainance");
    QVERIFY(host->remote().complete(*complaint, HostPerson(), QString(), RemoteSide::Channel::Service));
    QCOMPARE(host->remote().store().latest(1).first().localId, complaint->localId);
}

void TestRemoteLoop::newRecordsNeverTakeAnIdThatTheTrackKnows()
{
    const std::unique_ptr<DemoHost> first = makeHost();
    openTrack()->exec("UPDATE maintainance SET remote_id=500 WHERE id=1");
    QVERIFY(first->remote().prepare());
    QCOMPARE(first->remote().store().add(RemoteRecord()), 501);
}

void TestRemoteLoop::carsAreSwitchedFromAfar()
{
    const std::unique_ptr<DemoHost> host = makeHost();
    const HostCar before = host->fleet().cars().list().first();
    QSignalSpy notes(&host->remote(), &RemoteSide::logged);
    host->remote().switchAvailability(before.id);
    QTRY_COMPARE(host->fleet().cars().list().first().available, !before.available);
    const QJsonObject answer = lastHeard(*host, "remote_control_answer").value("req_answ").toObject();
    QCOMPARE(answer.value("carId").toInt(), before.id);
    QCOMPARE(answer.value("carAvailable").toBool(), !before.available);
    QTRY_VERIFY(notes.count() > 0);
    const QString note = notes.last().first().toString();
    QVERIFY2(note.contains(tr("kart %1 ").arg(before.number)), qPrintable(note)); // not by its id
    const QJsonArray cars = lastHeard(*host, "cars_list_changed").value("cars").toArray();
    QCOMPARE(cars.first().toObject().value("available_for_runs").toBool(), !before.available);
}

GARAGE_TEST(TestRemoteLoop)
#include "tst_remoteloop.moc"
