#include "hostcheck/catalogue.h"
#include "support/garagetest.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace {

struct HostRun
{
    int exitCode = -1;
    QString errors;
    QVector<QJsonObject> report;

    QVector<QJsonObject> findings() const
    {
        QVector<QJsonObject> findings;
        for (const QJsonObject &line : report) {
            if (line.value("record").toString() == "finding")
                findings.append(line);
        }
        return findings;
    }

    QStringList ids() const
    {
        QStringList ids;
        for (const QJsonObject &finding : findings())
            ids.append(finding.value("id").toString());
        return ids;
    }
    bool isComplete() const { return !report.isEmpty() && report.constLast().value("record") == "end"; }
};

QVector<QJsonObject> linesOf(const QString &fileName)
{
    QFile file(fileName);
    QVector<QJsonObject> lines;
    if (!file.open(QIODevice::ReadOnly))
        return lines;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (!line.isEmpty())
            lines.append(QJsonDocument::fromJson(line).object());
    }
    return lines;
}

} // namespace

/// Whole hosts as processes, with hostcheck in the place of the garage module.
class TestHostCheck final : public GarageTest
{
    Q_OBJECT

private slots:
    void theDemoHostPasses();
    void aHostThatFollowsTheGuidePasses_data();
    void aHostThatFollowsTheGuidePasses();
    void aWrongHostGetsItsFindingAndNoOther_data();
    void aWrongHostGetsItsFindingAndNoOther();
    void everyFindingHasAWrongHost();
    void aFindingSaysWhatWasSeenAndWhatItBreaks();
    void everyEarlyEventIsNamed();
    void afterACrashTheReportEndsWithTheMessage();
    void theDatabaseIsNotWritten();

private:
    HostRun run(const QString &program, const QStringList &arguments);
};

HostRun TestHostCheck::run(const QString &program, const QStringList &arguments)
{
    const QString report = home().path() + "/report.jsonl";
    QProcess host;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOSTCHECK_REPORT", report);
    host.setProcessEnvironment(environment);
    host.start(program, arguments);
    HostRun result;
    if (!host.waitForFinished(60000))
        return result;
    result.exitCode = host.exitStatus() == QProcess::NormalExit ? host.exitCode() : -1;
    result.errors = QString::fromUtf8(host.readAllStandardError());
    result.report = linesOf(report);
    return result;
}

void TestHostCheck::theDemoHostPasses()
{
    const QString script = home().path() + "/session.jsonl";
    QFile file(script);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"event":"clicked","data":{"key":"show_garage"}}
{"wait":300}
{"event":"send_settings_dialogs","data":{}}
{"event":"run_closed","data":{}}
{"event":"run_saved_to_db","data":{}}
{"wait":"answer"}
{"event":"remote_control_data","data":{"msg":"switchCarAvailability","data":{"carId":101},"sinkId":7}}
{"event":"car_complain","data":{"carId":101}}
{"wait":500}
)");
    file.close();
    const HostRun host =
        run(GARAGE_HOST, {"--plugin", HOSTCHECK, "--play", script, "--home", home().path() + "/demo"});
    QCOMPARE(host.exitCode, 0);
    QVERIFY(host.isComplete());
    QCOMPARE(host.ids(), QStringList());
}

void TestHostCheck::aHostThatFollowsTheGuidePasses_data()
{
    QTest::addColumn<QString>("variant");
    QTest::newRow("plain") << "none";
    QTest::newRow("remote ids beyond 32 bits") << "long-id";
}

void TestHostCheck::aHostThatFollowsTheGuidePasses()
{
    QFETCH(QString, variant);
    const HostRun host = run(WRONG_HOST, {variant});
    QCOMPARE(host.exitCode, 0);
    QVERIFY(host.isComplete());
    QCOMPARE(host.ids(), QStringList());
    QCOMPARE(host.errors, QString());
}

void TestHostCheck::aWrongHostGetsItsFindingAndNoOther_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("no-application") << "start-no-application";
    QTest::newRow("other-thread") << "start-wrong-thread";
    QTest::newRow("not-cast") << "start-not-cast";
    QTest::newRow("not-connected") << "start-not-connected";
    QTest::newRow("order") << "start-order";
    QTest::newRow("no-load-complete") << "start-no-load-complete";
    QTest::newRow("load-complete-twice") << "start-load-complete-twice";
    QTest::newRow("thread") << "thread-slot";
    QTest::newRow("unknown-event") << "message-unknown-event";
    QTest::newRow("wrong-type") << "message-shape";
    QTest::newRow("no-key") << "message-shape";
    QTest::newRow("bad-record") << "message-shape";
    QTest::newRow("bad-text") << "message-text";
    QTest::newRow("unknown-car") << "message-unknown-car";
    QTest::newRow("no-people") << "event-missing";
    QTest::newRow("no-run-closed") << "event-unused";
    QTest::newRow("no-cars") << "answer-cars";
    QTest::newRow("no-records") << "answer-remote";
    QTest::newRow("no-availability") << "answer-availability";
    QTest::newRow("tab-not-shown") << "answer-tab";
    QTest::newRow("tab-not-closed") << "answer-close";
    QTest::newRow("window-deleted") << "widget-window-deleted";
    QTest::newRow("page-deleted") << "widget-page-deleted";
    QTest::newRow("delete-on-close") << "widget-delete-on-close";
    QTest::newRow("taken-apart") << "widget-taken-apart";
    QTest::newRow("late-database") << "database-missing";
    QTest::newRow("no-table") << "database-tables";
    QTest::newRow("no-column") << "database-tables";
    QTest::newRow("no-limits-key") << "database-keys";
    QTest::newRow("no-state-default") << "database-keys";
    QTest::newRow("no-index") << "database-index";
    QTest::newRow("no-wal") << "database-journal";
    QTest::newRow("lap-number") << "database-lap-times";
    QTest::newRow("lap-space") << "database-lap-times";
    QTest::newRow("connection-name") << "database-connection-name";
    QTest::newRow("unloaded-late") << "end-after-application";
    QTest::newRow("never-unloaded") << "end-not-unloaded";
}

void TestHostCheck::aWrongHostGetsItsFindingAndNoOther()
{
    QFETCH(QString, id);
    const HostRun host = run(WRONG_HOST, {QTest::currentDataTag()});
    QCOMPARE(host.exitCode, 0);
    QCOMPARE(host.ids(), QStringList {id});
    QVERIFY(host.isComplete());
}

void TestHostCheck::everyFindingHasAWrongHost()
{
    QFile source(QFINDTESTDATA("tst_hostcheck.cpp"));
    QVERIFY(source.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(source.readAll());
    for (const FindingKind &kind : Catalogue::all())
        QVERIFY2(text.contains(QString("<< \"%1\"").arg(kind.id)), kind.id.data());
}

void TestHostCheck::everyEarlyEventIsNamed()
{
    const HostRun host = run(WRONG_HOST, {"order"});
    QCOMPARE(host.ids(), QStringList {"start-order"});
    QCOMPARE(host.findings().constFirst().value("seen").toString(),
             QString("personal_list, clicked came before load_complete."));
}

void TestHostCheck::aFindingSaysWhatWasSeenAndWhatItBreaks()
{
    const HostRun host = run(WRONG_HOST, {"wrong-type"});
    QCOMPARE(host.ids(), QStringList {"message-shape"});
    const QJsonObject finding = host.findings().constFirst();
    QCOMPARE(finding.value("severity").toString(), QString("error"));
    QCOMPARE(finding.value("seen").toString(),
             QString("cars_list_changed: the data[cars][0][num] is 7: Value type not permitted by 'type' "
                     "constraint."));
    QCOMPARE(finding.value("guide").toString(), QString("events.md#events-from-the-host-to-the-module"));
    QVERIFY(!finding.value("breaks").toString().isEmpty());
}

void TestHostCheck::afterACrashTheReportEndsWithTheMessage()
{
    const HostRun host = run(WRONG_HOST, {"crash-in-insert-tab"});
    QVERIFY(!host.isComplete());
    QVERIFY(!host.report.isEmpty());
    QCOMPARE(host.report.constLast().value("record").toString(), QString("sent"));
    QCOMPARE(host.report.constLast().value("event").toString(), QString("insert_tab"));
}

void TestHostCheck::theDatabaseIsNotWritten()
{
    // The rollback journal's file is written in place: its bytes show any change.
    const auto contents = [this] {
        QFile file(home().databasePath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    {
        const auto database = createDatabase();
    }
    const QByteArray before = contents();
    QVERIFY(!before.isEmpty());
    const HostRun host = run(WRONG_HOST, {"database-exists"});
    QVERIFY(host.isComplete());
    QCOMPARE(host.ids(), QStringList {"database-journal"});
    QCOMPARE(contents(), before);
}

GARAGE_TEST_WITHOUT_WINDOWS(TestHostCheck)
#include "tst_hostcheck.moc"
