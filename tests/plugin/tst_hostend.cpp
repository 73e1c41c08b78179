#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/loadedplugin.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QProcess>

namespace {

constexpr int defaultRounds = 3;

/// GARAGE_HOST_ENDS makes it longer than the suite's share.
int roundCount()
{
    bool isNumber = false;
    const int rounds = qEnvironmentVariableIntValue("GARAGE_HOST_ENDS", &isNumber);
    return isNumber ? qMax(rounds, 1) : defaultRounds;
}

const QJsonObject oneRemoteRecord {
    {"data", "[{\"id\":40,\"carId\":1,\"opId\":1,\"opDoneDateTime\":\"2026-03-01T10:00:00Z\"}]"}};

const QString archived = "remote_service_move_to_archive";

} // namespace

/// The end of a host while work is under way: by unloading the library, by deleting the root object along
/// with another, by quitting, by exit(). What was handed over is stored; a host that is being destroyed is
/// sent nothing.
class TestHostEnd : public GarageTest
{
    Q_OBJECT
private slots:
    void handedOverWritesSurviveEveryEndOfTheProcess_data();
    void handedOverWritesSurviveEveryEndOfTheProcess();
    void aQuittingHostIsToldWhatWasStored();
    void aHostThatRunsItsEventLoopAgainIsServedOn();
    void theEndOfTheApplicationObjectSendsNothing();
    void unloadingSendsOnlyWhatWasStored();
    void unloadingDoesNotRunQueuedCalls();
    void aParentThatIsWholeDoesNotSilenceTheUnloading();
    void aLockHoldsUpQuittingAndUnloadingForTenSecondsTogether();

private:
    struct Result
    {
        bool hasCrashed = true;
        int exitCode = -1;
        QStringList output;
    };
    static Result runHost(const QString &way);
    /// Waits until the loader has sent everything, without an event reaching the GUI thread.
    static void awaitLoader();
};

TestHostEnd::Result TestHostEnd::runHost(const QString &way)
{
    QProcess host;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("MALLOC_PERTURB_", "165");
    host.setProcessEnvironment(environment);
    host.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    host.start(EXITING_HOST, {way});
    if (!host.waitForFinished(30000)) {
        host.kill();
        host.waitForFinished();
        return {};
    }
    return {host.exitStatus() != QProcess::NormalExit, host.exitCode(),
            QString::fromUtf8(host.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts)};
}

void TestHostEnd::awaitLoader()
{
    QStringList lines;
    QElapsedTimer timer;
    timer.start();
    while (!lines.join('\n').contains("step 4 done ")) {
        QVERIFY(timer.elapsed() < 30000);
        QThread::msleep(5);
        lines += takeDebugLines();
    }
    // The messages of the last step follow its mark.
    QThread::msleep(100);
}

void TestHostEnd::handedOverWritesSurviveEveryEndOfTheProcess_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way :
         {"return", "exit-from-slot", "exit-from-message", "leak-application", "parent", "quit"})
        QTest::newRow(way) << way;
}

void TestHostEnd::handedOverWritesSurviveEveryEndOfTheProcess()
{
    QFETCH(QString, way);
    const auto database = createDatabase();
    const int rounds = roundCount();
    for (int round = 0; round < rounds; ++round) {
        database->exec("DELETE FROM maintainance");
        const Result result = runHost(way);
        QVERIFY(!result.hasCrashed);
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(database->rows("SELECT remote_id FROM maintainance"), QStringList("40"));
    }
    QCOMPARE(database->value("PRAGMA integrity_check").toString(), "ok");
}

void TestHostEnd::aQuittingHostIsToldWhatWasStored()
{
    const auto database = createDatabase();
    const Result result = runHost("quit");
    QCOMPARE(result.exitCode, 0);
    const int end = int(result.output.indexOf("end of the event loop"));
    QVERIFY2(result.output.mid(0, end).contains(archived), qPrintable(result.output.join(' ')));
    QCOMPARE(result.output.mid(end + 1), QStringList());
}

void TestHostEnd::aHostThatRunsItsEventLoopAgainIsServedOn()
{
    const auto database = createDatabase();
    const Result result = runHost("run-again");
    QCOMPARE(result.exitCode, 0);
    const int end = int(result.output.indexOf("end of the event loop"));
    QVERIFY2(result.output.mid(0, end).contains(archived), qPrintable(result.output.join(' ')));
    QVERIFY2(result.output.mid(end).contains("update_pending_service"), qPrintable(result.output.join(' ')));
}

void TestHostEnd::theEndOfTheApplicationObjectSendsNothing()
{
    const auto database = createDatabase();
    const Result result = runHost("return");
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output, QStringList({"insert_tab", "end of main"}));
}

void TestHostEnd::unloadingSendsOnlyWhatWasStored()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    host.send("remote_service_data", oneRemoteRecord);
    awaitLoader();
    host.unload();
    QCOMPARE(LoadedPlugin::names(host.takeMessages()), QStringList(archived));
}

void TestHostEnd::unloadingDoesNotRunQueuedCalls()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    QMetaObject::invokeMethod(host.plugin(), "pluginSlot", Qt::QueuedConnection, Q_ARG(QString, QString()),
                              Q_ARG(QString, QString("load_complete")), Q_ARG(QJsonObject, QJsonObject()));
    host.unload();
    QCOMPARE(LoadedPlugin::names(host.takeMessages()), QStringList());
}

void TestHostEnd::aParentThatIsWholeDoesNotSilenceTheUnloading()
{
    const auto database = createDatabase();
    QObject parent;
    LoadedPlugin host;
    host.plugin()->setParent(&parent);
    host.send("remote_service_data", oneRemoteRecord);
    host.unload();
    QCOMPARE(LoadedPlugin::names(host.takeMessages()), QStringList(archived));
}

void TestHostEnd::aLockHoldsUpQuittingAndUnloadingForTenSecondsTogether()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    host.send("run_saved_to_db");
    host.awaitReload();
    const DatabaseLock lock(home().databasePath(), DatabaseLock::Exclusive, 60000);
    host.send("remote_service_data", oneRemoteRecord);
    QElapsedTimer timer;
    timer.start();
    QTimer::singleShot(0, &host, &QCoreApplication::quit);
    QCoreApplication::exec();
    QVERIFY2(timer.elapsed() > 8000, qPrintable(QString::number(timer.elapsed())));
    host.unload();
    QVERIFY2(timer.elapsed() < 10000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(lock.isHeld());
    QCOMPARE(LoadedPlugin::names(host.takeMessages()), QStringList());
}

GARAGE_TEST(TestHostEnd)
#include "tst_hostend.moc"
