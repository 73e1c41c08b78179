#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"
#include "host/remote/remotestore.h"
#include "support/garagetest.h"
#include "support/json.h"
#include "tests/host/webclient.h"

#include <QJsonDocument>
#include <QProcess>
#include <QRandomGenerator>
#include <QUrl>

namespace {

constexpr int carCount = 24;

/// A piece of work that somebody ticks off on the page.
struct Tick
{
    QString key;
    int carId = -1;
    int opId = -1;
    int localId = -1;

    std::string body() const
    {
        const QJsonObject work {{"key", key},     {"car_id", carId},
                                {"op_id", opId},  {"local_id", localId},
                                {"comment", key}, {"done_time", "2026-03-01T10:00:00Z"}};
        return QJsonDocument(QJsonObject {{"services", QJsonArray {work}}}).toJson().toStdString();
    }
};

/// Asks again while the server has too much to do, as the page does.
bool isAnswered(WebPage &page, const Tick &tick)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 10000) {
        const int status = page.post("/api/services", tick.body()).status;
        if (status != 429 && status != 503)
            return status == 200;
        QThread::msleep(50);
    }
    return false;
}

/// Records of the remote side that the track has not archived.
int unarchived()
{
    const TestDatabase remote(DataFolder::userDocuments().remoteRecordsPath(), false);
    return remote.value("SELECT count(*) FROM remote_records WHERE state<>?", {RemoteRecord::Archived})
        .toInt();
}

/// The served demo host; killed with this object at the latest.
class ServedHost final
{
public:
    explicit ServedHost(const QString &step = {})
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(WEB_HOST, step.isEmpty() ? QStringList() : QStringList(step));
        while (!m_process.canReadLine() && m_process.waitForReadyRead(30000)) { }
        m_port = std::uint16_t(QUrl(QString::fromUtf8(m_process.readLine().trimmed())).port(0));
    }
    ~ServedHost() { kill(); }

    /// 0 if it was killed before it printed it.
    std::uint16_t port() const { return m_port; }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    bool waitForEnd() { return m_process.waitForFinished(30000); }

private:
    QProcess m_process;
    std::uint16_t m_port = 0;
};

} // namespace

/// The host is killed between any two steps of the way of a piece of work: the page, which asks until it is
/// answered, gets each of them stored once and archived.
class TestWebKills final : public GarageTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void workSurvivesAKillAtEachStep();
    void workSurvivesKillsAtAnyTime();

private:
    /// Another piece of work: each second one completes an open complaint.
    Tick nextTick();
    /// What has just been stored at the track is what was ticked, and nothing else.
    void checkBooks();

    std::unique_ptr<TestDatabase> m_track;
    QVector<Tick> m_ticks;
};

void TestWebKills::init()
{
    GarageTest::init();
    home().createDatabaseFolder();
    QVERIFY(HostDatabase::prepare(DataFolder::userDocuments()));
    m_track = std::make_unique<TestDatabase>(home().databasePath(), false);
    for (int car = 1; car <= carCount; ++car)
        m_track->addCar(car, QString::number(car), "Вихрь");
    m_track->addOperation(1, "Замена масла");
    m_track->exec("INSERT INTO personal VALUES (7,'Яшин','Лев','Иванович')");
    m_track->exec("INSERT INTO host_personal VALUES (7,'1234')");
    m_ticks.clear();
}

void TestWebKills::cleanup()
{
    m_track.reset();
    GarageTest::cleanup();
}

Tick TestWebKills::nextTick()
{
    const int number = int(m_ticks.size());
    Tick tick {QString("tick-%1").arg(number, 4, 10, QLatin1Char('0')), 1 + number % carCount, 1, -1};
    if (number % 2 == 1) {
        tick.opId = -1;
        tick.localId = m_track->addRecord(tick.carId, -1, "2026-02-01T10:00:00.000Z", 0, "стук");
    }
    m_ticks.append(tick);
    return tick;
}

void TestWebKills::checkBooks()
{
    const ServedHost host;
    WebPage page(host.port());
    QCOMPARE(page.signIn("1234"), 200);
    for (const Tick &tick : qAsConst(m_ticks)) { // the page does not know which of them were stored
        QVERIFY(isAnswered(page, tick));
    }
    QTRY_COMPARE(TestDatabase(DataFolder::userDocuments().remoteRecordsPath(), false)
                     .value("SELECT count(*) FROM remote_records WHERE state=?", {RemoteRecord::Archived})
                     .toInt(),
                 int(m_ticks.size()));
    const TestDatabase remote(DataFolder::userDocuments().remoteRecordsPath(), false);
    QCOMPARE(remote.value("SELECT count(*) FROM remote_records").toInt(), int(m_ticks.size()));
    QCOMPARE(m_track->value("SELECT count(*) FROM maintainance").toInt(), int(m_ticks.size()));
    for (const Tick &tick : qAsConst(m_ticks)) {
        const QStringList rows = m_track->rows(
            QString(
                "SELECT car_id,operation_id,operation_state,person_id FROM maintainance WHERE comment='%1'")
                .arg(tick.key));
        QCOMPARE(rows, QStringList(QString("%1|%2|1|7").arg(tick.carId).arg(tick.opId)));
    }
}

void TestWebKills::workSurvivesAKillAtEachStep()
{
    for (const char *step : {"stored", "marked", "handed", "committed", "announced", "archived"}) {
        for (int round = 0; round < 2; ++round) {
            const Tick tick = nextTick();
            {
                const ServedHost calm; // whatever is left of the kill before is archived
                QTRY_COMPARE_WITH_TIMEOUT(unarchived(), 0, 30000);
            }
            ServedHost host(step);
            QVERIFY(host.port() != 0);
            WebPage page(host.port());
            QCOMPARE(page.signIn("1234"), 200);
            page.post("/api/services", tick.body());
            QVERIFY2(host.waitForEnd(), step);
        }
    }
    checkBooks();
}

void TestWebKills::workSurvivesKillsAtAnyTime()
{
    bool isNumber = false;
    const int kills = qEnvironmentVariableIntValue("GARAGE_KILLS", &isNumber);
    QRandomGenerator random(20261122);
    for (int round = 0; round < (isNumber ? kills : 5); ++round) {
        ServedHost host;
        QElapsedTimer timer;
        timer.start();
        const int life = int(random.bounded(500u));
        WebPage page(host.port());
        page.signIn("1234");
        while (timer.elapsed() < life) {
            const Tick tick = nextTick();
            page.post("/api/services", tick.body());
            QThread::usleep(random.bounded(20000u));
        }
        host.kill();
    }
    QVERIFY(m_ticks.size() > 20);
    checkBooks();
}

GARAGE_TEST(TestWebKills)
#include "tst_webkills.moc"
