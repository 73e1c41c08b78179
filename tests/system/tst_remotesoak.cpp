#include "support/garagetest.h"
#include "support/resources.h"

#include "host/app/demohost.h"
#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"
#include "host/sample/sampledata.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QJsonArray>
#include <QMessageBox>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSet>
#include <QSignalSpy>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>

namespace {

constexpr int defaultSeconds = 8;
constexpr int actionPause = 40; // milliseconds
// Each request means a reload of its own, which takes longer as the laps grow: without pacing the queue only
// grows.
constexpr int mostUnanswered = 20;
constexpr int leastArchived = 10;
constexpr int takenBack = 5; // of the archived ones, by deletions on their way
// With a service log that only grows, so would the memory: which would hide a leak.
constexpr int mostRecords = 1000;

/// GARAGE_SOAK_SECONDS makes it longer than the suite's share.
int soakMilliseconds()
{
    bool isNumber = false;
    const int seconds = qEnvironmentVariableIntValue("GARAGE_SOAK_SECONDS", &isNumber);
    return (isNumber ? seconds : defaultSeconds) * 1000;
}

/// Accepts every dialog that opens.
void acceptDialog()
{
    QWidget *dialog = QApplication::activeModalWidget();
    if (auto *question = qobject_cast<QMessageBox *>(dialog))
        question->button(QMessageBox::Yes)->click();
    else if (auto *entry = qobject_cast<QDialog *>(dialog))
        entry->accept();
}

} // namespace

/// All sides act at random while karts drive fast; in the end all stores must agree.
class TestRemoteSoak final : public GarageTest
{
    Q_OBJECT

private slots:
    void theBooksAgreeAfterRandomActions();

public slots:
    void countReload() { ++m_reloadsAsked; }

private:
    void act(DemoHost &host);
    void completeSome(DemoHost &host);
    void complain(const TestDatabase &track, DemoHost &host);
    void markDone(const TestDatabase &track, DemoHost &host);
    void recordService();
    void deleteRecord();
    bool enoughHappened(DemoHost &host) const;
    /// Records the plug-in's messages.
    void handleMessage(const HostMessage &message);
    void checkBooks(const ArchiveFindings &findings, int remoteRecords);
    int count(const char *condition, const QVariant &value = {});

    QRandomGenerator m_random {42};
    std::unique_ptr<TestDatabase> m_track;
    QWidget *m_garage = nullptr;
    int m_rowsBefore = 0;
    int m_lastIdBefore = 0;
    int m_complaints = 0;
    int m_completions = 0;
    int m_events = 0;
    int m_announced = 0; // "add_remote_service", both shapes
    int m_recorded = 0; // of these the ones stored here already
    QSet<int> m_deleted;
    int m_newLocalDeleted = 0; // of these the ones that were made here meanwhile
    int m_reloadsAsked = 0;
    int m_reloadsTold = 0;
};

void TestRemoteSoak::completeSome(DemoHost &host)
{
    const QVector<PendingService> &list = host.remote().pending();
    if (list.isEmpty())
        return;
    const QVector<HostPerson> people = host.fleet().people().list();
    const auto channel =
        m_random.bounded(2) == 0 ? RemoteSide::Channel::Service : RemoteSide::Channel::RemoteControl;
    const PendingService work = list.at(m_random.bounded(list.size()));
    const HostPerson &person = people.at(m_random.bounded(people.size()));
    if (host.remote().complete(work, person, "сделано", channel)) // not on a locked file
        ++m_completions;
}

/// A car that has no open complaint gets one, as if a user had entered it.
void TestRemoteSoak::complain(const TestDatabase &track, DemoHost &host)
{
    const int car = host.fleet().cars().list().at(m_random.bounded(24)).id;
    const QVariant open = track.value(
        "SELECT id FROM maintainance WHERE car_id=? AND operation_id=-1 AND operation_state=0", {car});
    if (open.isValid())
        return;
    track.exec("INSERT INTO maintainance (car_id,operation_id,operation_time,person_id,person_name,"
               "comment,operation_state) VALUES (?,-1,?,-1,'','стук',0)",
               {car, QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)});
    ++m_complaints;
    host.plugin().send("run_saved_to_db");
}

/// A slow machine needs longer until there is something to compare.
bool TestRemoteSoak::enoughHappened(DemoHost &host) const
{
    return m_recorded > 3 && m_deleted.size() > 3
        && host.remote().store().count(RemoteRecord::Archived) > leastArchived + takenBack;
}

/// What the garage window sends when a record of the service log is marked done.
void TestRemoteSoak::markDone(const TestDatabase &track, DemoHost &host)
{
    QSqlQuery open = track.exec("SELECT id,car_id FROM maintainance WHERE operation_state=0 LIMIT 1");
    if (!open.next())
        return;
    const QJsonObject record {
        {"carId", open.value(1).toInt()},
        {"opId", -1},
        {"opDoneDateTime", QDateTime::currentDateTimeUtc().toString("yyyy-MM-ddThh:mmZ")},
        {"operatorId", -1},
        {"localId", open.value(0).toInt()},
        {"updateFromLocal", true}};
    emit host.plugin().received({"garage_plugin", "add_remote_service", record});
}

/// The pointer over a cell of the maintenance table, a click on the button that appears.
void TestRemoteSoak::recordService()
{
    auto *table = m_garage->findChild<QTreeView *>("tvMaintainanceTable");
    const int rows = table->model()->rowCount();
    const int columns = table->model()->columnCount();
    if (rows == 0 || columns < 4)
        return;
    const QModelIndex index = table->model()->index(m_random.bounded(rows), m_random.bounded(3, columns));
    table->scrollTo(index);
    const QPoint cell = table->visualRect(index).center();
    QMouseEvent move(QEvent::MouseMove, cell, table->viewport()->mapToGlobal(cell), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(table->viewport(), &move);
    for (QPushButton *button : table->viewport()->findChildren<QPushButton *>()) {
        if (button->isVisibleTo(table->viewport())) {
            QTimer::singleShot(0, this, &acceptDialog);
            button->click();
            return;
        }
    }
}

void TestRemoteSoak::deleteRecord()
{
    auto *log = m_garage->findChild<QTreeView *>("tvServiceLog");
    const int rows = log->model()->rowCount();
    if (rows == 0)
        return;
    log->setCurrentIndex(log->model()->index(m_random.bounded(std::min(rows, 40)), 1));
    QTimer::singleShot(0, this, &acceptDialog);
    m_garage->findChild<QAction *>("actionDeleteMaintainanceItem")->trigger();
}

void TestRemoteSoak::handleMessage(const HostMessage &message)
{
    ++m_events;
    if (message.event == "insert_tab") {
        m_garage = reinterpret_cast<QWidget *>(message.data.value("tabWidget").toVariant().toLongLong());
    } else if (message.event == "add_remote_service") {
        ++m_announced;
        m_recorded += message.data.contains("updateFromLocal") ? 0 : 1;
    } else if (message.event == "update_pending_service") {
        ++m_reloadsTold;
    } else if (message.event == "remote_service_delete") {
        const int id = message.data.value("localId").toInt();
        const bool isNew = id > m_lastIdBefore && !m_deleted.contains(id);
        m_newLocalDeleted += isNew && message.data.value("remoteId").toInt() == -1 ? 1 : 0;
        m_deleted.insert(id);
    }
}

void TestRemoteSoak::act(DemoHost &host)
{
    if (count("1") > mostRecords) {
        deleteRecord();
        return;
    }
    switch (m_random.bounded(8)) {
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
        recordService();
        break;
    case 5:
        deleteRecord();
        break;
    case 6:
        host.remote().switchAvailability(host.fleet().cars().list().at(m_random.bounded(24)).id);
        break;
    default:
        host.remote().setSendsAtOnce(m_random.bounded(2) == 0);
        host.remote().sendWaiting();
        break;
    }
}

void TestRemoteSoak::theBooksAgreeAfterRandomActions()
{
    const DataFolder documents = DataFolder::userDocuments();
    QVERIFY(HostDatabase::prepare(documents));
    {
        HostConnection connection(documents.databasePath());
        QCOMPARE(generateSampleData(connection, SampleKind::Sample, 1, QDateTime::currentDateTimeUtc(),
                                    [](int) { return true; }),
                 SampleOutcome::Done);
    }
    m_track = std::make_unique<TestDatabase>(home().databasePath(), false);
    m_rowsBefore = count("1");
    m_lastIdBefore = m_track->value("SELECT max(id) FROM maintainance").toInt();
    DemoHost host(documents, 1);
    QVERIFY(host.plugin().load(GARAGE_PLUGIN));
    QVERIFY(host.remote().prepare());
    connect(&host.plugin(), &PluginHost::received, this, &TestRemoteSoak::handleMessage);
    connect(&host.plugin(), &PluginHost::sent, this, [this] { ++m_events; });
    host.fleet().sendStartSequence();
    host.plugin().send("clicked", {{"key", "show_garage"}});
    QVERIFY(m_garage);
    // Each of them ends with a reload, and each reload with one message.
    for (const char *request : {SIGNAL(reloadGarageStats()), SIGNAL(deleteOperation(int, int)),
                                SIGNAL(updateServiceTable(QJsonArray, QJsonArray))})
        QVERIFY(connect(m_garage, request, SLOT(countReload())));
    m_garage->resize(1200, 700);
    m_garage->show();
    host.track().setSpeed(Track::fastest);
    host.track().setLive(true);

    QElapsedTimer clock;
    clock.start();
    const auto actWhile = [&](const std::function<bool()> &goesOn) {
        while (goesOn()) {
            if (m_reloadsAsked - m_reloadsTold < mostUnanswered)
                act(host);
            QTest::qWait(actionPause);
        }
    };
    actWhile([&] { return clock.elapsed() < soakMilliseconds() / 10; });
    const Resources early = Resources::now();
    actWhile([&] { return clock.elapsed() < soakMilliseconds(); });
    const Resources late = Resources::now();
    qInfo("from a tenth to the end: heap %lld -> %lld KiB, resident %lld -> %lld KiB, threads %d -> %d, "
          "handles %d -> %d",
          early.heapBytes / 1024, late.heapBytes / 1024, early.residentBytes / 1024,
          late.residentBytes / 1024, early.threads, late.threads, early.handles, late.handles);
    QVERIFY(late.handles <= early.handles + 2); // SQLite's journal exists only during a transaction
    const int patience = std::max(120000, soakMilliseconds() / 2);
    QTRY_VERIFY_WITH_TIMEOUT(host.track().savedRuns() > 3, patience);
    host.track().setLive(false); // more laps would make each answer slower still
    actWhile([&] { return !enoughHappened(host) && clock.elapsed() < soakMilliseconds() + patience; });
    QVERIFY(enoughHappened(host));
    host.remote().setSendsAtOnce(true);
    host.remote().sendWaiting();
    QTRY_COMPARE_WITH_TIMEOUT(host.remote().store().count(RemoteRecord::Waiting), 0, patience);
    QTRY_COMPARE_WITH_TIMEOUT(host.remote().store().count(RemoteRecord::Sent), 0, patience);
    QSignalSpy pending(&host.remote(), &RemoteSide::pendingChanged);
    host.plugin().send("run_saved_to_db"); // its answer comes after all that was asked before
    QVERIFY(pending.wait(patience));
    QTest::qWait(500);

    const int remoteRecords = int(host.remote().store().latest(std::numeric_limits<int>::max()).size());
    checkBooks(host.remote().checkArchive(), remoteRecords);
}

int TestRemoteSoak::count(const char *condition, const QVariant &value)
{
    const QString statement = QString("SELECT count(*) FROM maintainance WHERE ") + condition;
    return value.isValid() ? m_track->value(statement, {value}).toInt() : m_track->value(statement).toInt();
}

void TestRemoteSoak::checkBooks(const ArchiveFindings &findings, int remoteRecords)
{
    const int rows = count("1");
    qInfo(
        "%d messages; rows %d before, %d after; %d services and %d complaints recorded, %d records deleted, "
        "%d remote records, %d of them archived",
        m_events, m_rowsBefore, rows, m_recorded, m_complaints, int(m_deleted.size()), remoteRecords,
        findings.archived);
    QCOMPARE(findings.missing, QVector<int>());
    QCOMPARE(findings.notDeleted, QVector<int>());
    QVERIFY(findings.archived > leastArchived);
    // The remote side has each announced record, and each of its own, once.
    QCOMPARE(remoteRecords, m_announced + m_completions);
    // The deleted records are not in the file.
    for (const int id : qAsConst(m_deleted))
        QCOMPARE(count("id=?", id), 0);
    // No record is stored twice, neither a local nor a remote one.
    QCOMPARE(count("id>? AND remote_id IS NULL", m_lastIdBefore) + m_newLocalDeleted,
             m_complaints + m_recorded);
    QCOMPARE(m_track->value("SELECT count(DISTINCT remote_id) FROM maintainance").toInt(),
             count("remote_id IS NOT NULL"));
    const int lastId = m_track->value("SELECT seq FROM sqlite_sequence WHERE name='maintainance'").toInt();
    QCOMPARE(rows + m_deleted.size(), m_rowsBefore + lastId - m_lastIdBefore);
    m_track.reset();
}

GARAGE_TEST(TestRemoteSoak)
#include "tst_remotesoak.moc"
