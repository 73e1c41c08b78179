#include "support/garagetest.h"

#include "demohost.h"
#include "hostdatabase.h"
#include "hosthome.h"
#include "sampledata.h"

#include <QJsonArray>
#include <QRandomGenerator>
#include <QSignalSpy>

#include <memory>

namespace {

constexpr int defaultSeconds = 8;
constexpr int actionPause = 40; // milliseconds

/// GARAGE_SOAK_SECONDS makes it longer than the suite's share.
int soakMilliseconds()
{
    bool isNumber = false;
    const int seconds = qEnvironmentVariableIntValue("GARAGE_SOAK_SECONDS", &isNumber);
    return (isNumber ? seconds : defaultSeconds) * 1000;
}

} // namespace

/// All sides act at random while karts drive fast; in the end the books must agree.
class TestRemoteSoak final : public GarageTest
{
    Q_OBJECT

private slots:
    void theBooksAgreeAfterRandomActions();

private:
    void act(DemoHost &host);
    void completeSome(DemoHost &host);
    void complain(const TestDatabase &track, DemoHost &host);
    void markDone(const TestDatabase &track, DemoHost &host);

    QRandomGenerator m_random {42};
    std::unique_ptr<TestDatabase> m_track;
    int m_complaints = 0;
};

void TestRemoteSoak::completeSome(DemoHost &host)
{
    const QVector<PendingService> &list = host.remote().pending();
    if (list.isEmpty())
        return;
    const QVector<FleetPerson> people = host.fleet().fleet().people();
    const auto channel =
        m_random.bounded(2) == 0 ? RemoteSide::Channel::Service : RemoteSide::Channel::RemoteControl;
    const PendingService work = list.at(m_random.bounded(list.size()));
    host.remote().complete(work, people.at(m_random.bounded(people.size())), QStringLiteral("сделано"),
                           channel);
}

/// A car that has no open complaint gets one, as if somebody had typed it in.
void TestRemoteSoak::complain(const TestDatabase &track, DemoHost &host)
{
    const int car = host.fleet().fleet().cars().at(m_random.bounded(24)).id;
    const QVariant open = track.value(
        QStringLiteral(
            "SELECT id FROM maintainance WHERE car_id=? AND operation_id=-1 AND operation_state=0"),
        {car});
    if (open.isValid())
        return;
    track.exec(
        QStringLiteral("INSERT INTO maintainance (car_id,operation_id,operation_time,person_id,person_name,"
                       "comment,operation_state) VALUES (?,-1,?,-1,'','стук',0)"),
        {car, QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)});
    ++m_complaints;
    host.plugin().send(QStringLiteral("run_saved_to_db"));
}

/// What the garage window sends when a journal record is marked done.
void TestRemoteSoak::markDone(const TestDatabase &track, DemoHost &host)
{
    QSqlQuery open =
        track.exec(QStringLiteral("SELECT id,car_id FROM maintainance WHERE operation_state=0 LIMIT 1"));
    if (!open.next())
        return;
    const QJsonObject record {{QStringLiteral("carId"), open.value(1).toInt()},
                              {QStringLiteral("opId"), -1},
                              {QStringLiteral("opDoneDateTime"),
                               QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-ddThh:mmZ"))},
                              {QStringLiteral("operatorId"), -1},
                              {QStringLiteral("localId"), open.value(0).toInt()},
                              {QStringLiteral("updateFromLocal"), true}};
    emit host.plugin().received(
        {QStringLiteral("garage_plugin"), QStringLiteral("add_remote_service"), record});
}

void TestRemoteSoak::act(DemoHost &host)
{
    switch (m_random.bounded(6)) {
    case 0:
    case 1:
        completeSome(host);
        break;
    case 2:
        complain(*m_track, host);
        break;
    case 3:
        markDone(*m_track, host);
        break;
    case 4:
        host.remote().switchAvailability(host.fleet().fleet().cars().at(m_random.bounded(24)).id);
        break;
    default:
        host.remote().setSendsAtOnce(m_random.bounded(2) == 0);
        host.remote().sendWaiting();
        break;
    }
}

void TestRemoteSoak::theBooksAgreeAfterRandomActions()
{
    const HostHome documents = HostHome::userDocuments();
    QCOMPARE(HostDatabase::prepare(documents), QString());
    {
        HostConnection connection(documents.databasePath());
        QCOMPARE(makeSampleData(connection, SampleKind::Sample, 1, QDateTime::currentDateTimeUtc(),
                                [](int) { return true; }),
                 SampleOutcome::Made);
    }
    m_track = std::make_unique<TestDatabase>(home().databasePath(), false);
    const int rowsBefore = m_track->value(QStringLiteral("SELECT count(*) FROM maintainance")).toInt();
    {
        DemoHost host(documents, 1);
        QCOMPARE(host.plugin().load(QStringLiteral(GARAGE_PLUGIN)), QString());
        QCOMPARE(host.remote().prepare(), QString());
        host.fleet().playStart();
        host.track().setSpeed(Track::fastest);
        host.track().setLive(true);

        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < soakMilliseconds()) {
            act(host);
            QTest::qWait(actionPause);
        }
        host.track().setLive(false);
        host.remote().setSendsAtOnce(true);
        host.remote().sendWaiting();
        QTRY_COMPARE_WITH_TIMEOUT(host.remote().store().count(RemoteRecord::Waiting), 0, 30000);
        QTRY_COMPARE_WITH_TIMEOUT(host.remote().store().count(RemoteRecord::Sent), 0, 30000);

        const ArchiveFindings findings = host.remote().checkArchive();
        QVERIFY(findings.isGood());
        QVERIFY(findings.archived > 10);
        QVERIFY(host.track().savedRuns() > 3);
    }
    // Each archived record is a row of its own or has closed the row that it names; nothing came twice.
    const int inserted =
        m_track->value(QStringLiteral("SELECT count(*) FROM maintainance WHERE remote_id IS NOT NULL"))
            .toInt();
    QCOMPARE(m_track->value(QStringLiteral("SELECT count(DISTINCT remote_id) FROM maintainance")).toInt(),
             inserted);
    QCOMPARE(m_track->value(QStringLiteral("SELECT count(*) FROM maintainance")).toInt(),
             rowsBefore + inserted + m_complaints);
    m_track.reset();
}

QTEST_MAIN(TestRemoteSoak)
#include "tst_remotesoak.moc"
