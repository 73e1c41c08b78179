#include "support/busyhost.h"
#include "support/databaselock.h"
#include "support/garagetest.h"
#include "tool.h"

#include "garagectl/output/textwidth.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>

namespace {

/// FOLDER is replaced by the path of an empty folder, LOG by that of a message log.
const QList<QStringList> commands = {
    {"due"},    {"forecast"},     {"explain", "7", "Chain"}, {"history"}, {"report", "/dev/stdout"},
    {"doctor"}, {"audit", "LOG"}, {"backup", "FOLDER"}};
/// Those whose output shows the karts.
const QStringList kartCommands = {"due", "forecast", "explain", "history", "report"};

void fill(const TestDatabase &database)
{
    database.addCar(1, "7", "Sodi");
    database.addOperation(1, "Chain");
    database.addLimit("Sodi", 1, 0, 0, 2);
    database.addRecord(1, 1, "2026-03-01T10:00:00.000Z", 1);
    for (int lap = 0; lap < 3; ++lap)
        database.addLap(1, 1, QString("2026-03-02T10:0%1:00.000Z").arg(lap), 60000);
}

void addCommands()
{
    QTest::addColumn<QStringList>("command");
    for (const QStringList &command : commands)
        QTest::newRow(qPrintable(command.first())) << command;
}

/// No output, but a failure in one sentence.
void verifyRefused(const Tool::Result &result, const QString &reason)
{
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.output.isEmpty(), result.output.constData());
    QVERIFY2(result.errors.contains(reason), qPrintable(result.errors));
    QCOMPARE(result.errors.count('\n'), 1);
}

/// The same, but for the command whose output says what is wrong.
void verifyFaultNamed(const QStringList &command, const Tool::Result &result, const QString &reason,
                      const QString &findingId)
{
    if (command.first() != "doctor") {
        verifyRefused(result, reason);
        return;
    }
    QCOMPARE(result.exitCode, 4);
    QCOMPARE(result.errors, QString());
    QVERIFY2(result.output.contains(findingId.toUtf8()), result.output.constData());
}

} // namespace

/// Each command on each kind of file; none changes the file or its folder.
class TestToolAnyFile : public GarageTest
{
    Q_OBJECT
private slots:
    void aMissingFileIsNotMade_data() { addCommands(); }
    void aMissingFileIsNotMade();
    void filesThatAreNoDatabaseAreRefused_data();
    void filesThatAreNoDatabaseAreRefused();
    void eachMissingTableIsNamed_data();
    void eachMissingTableIsNamed();
    void aGoodFileStaysAsItIs_data();
    void aGoodFileStaysAsItIs();
    void aWriteAheadLogStaysAsItIs_data();
    void aWriteAheadLogStaysAsItIs();
    void aLockIsWaitedFor();
    void aLockThatStaysIsReported();
    void aBusyHostDoesNotDisturb();
    void anInterruptedWriteIsReported();
    void hostileNamesComeThroughWhole_data();
    void hostileNamesComeThroughWhole();
    void anUnfinishedOutputLeavesNothing();
    void outputThatCannotBeWrittenIsReported();
    void aDatabaseIsNeverReplaced();

private:
    Tool::Result runOn(const QStringList &command, const QStringList &options = {});
};

/// Verifies, too, that a command leaves no file that it has not finished.
Tool::Result TestToolAnyFile::runOn(const QStringList &command, const QStringList &options)
{
    const QString folder = home().path() + "/copies";
    const QString log = home().path() + "/messages.jsonl";
    QDir().mkpath(folder);
    QFile file(log);
    if (file.open(QIODevice::WriteOnly))
        file.write(R"({"module":"host","event":"run_closed","data":{}})");
    file.close();
    QStringList arguments = command + options;
    arguments.replaceInStrings("FOLDER", folder).replaceInStrings("LOG", log);
    const Tool::Result result = Tool::run(arguments);
    const QStringList files = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    const bool hasCopy = command.first() == "backup" && result.exitCode == 0;
    if (files.size() != (hasCopy ? 1 : 0))
        return {-1, "", "unexpected files: " + files.join(' ')};
    for (const QString &copy : files)
        QFile::remove(folder + '/' + copy);
    return result;
}

void TestToolAnyFile::aMissingFileIsNotMade()
{
    QFETCH(QStringList, command);
    const QString reason = "there is no file " + home().databasePath();
    verifyFaultNamed(command, runOn(command), reason, "folder-missing");
    QVERIFY(!QFile::exists(home().databasePath()));
    home().createDatabaseFolder();
    verifyFaultNamed(command, runOn(command), reason, "file-missing");
    QVERIFY(Tool::folderState(home().databasePath()).isEmpty());
}

void TestToolAnyFile::filesThatAreNoDatabaseAreRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray() << "is empty";
    QTest::newRow("text") << QByteArray(5000, 'x') << "is not an SQLite database";
    QTest::newRow("header alone") << QByteArray("SQLite format 3", 16) << "is not an SQLite database";
    QTest::newRow("header and garbage")
        << QByteArray("SQLite format 3", 16) + QByteArray(5000, 'x') << "is not an SQLite database";
}

void TestToolAnyFile::filesThatAreNoDatabaseAreRefused()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    QVERIFY(home().writeDatabaseFile(content));
    const QStringList before = Tool::folderState(home().databasePath());
    const QString findingId = content.isEmpty() ? "file-empty" : "not-a-database";
    for (const QStringList &command : commands) {
        verifyFaultNamed(command, runOn(command), reason, findingId);
        QCOMPARE(Tool::folderState(home().databasePath()), before);
    }
    verifyRefused(Tool::run({"due", "--database", home().path()}), "is not a file");
}

void TestToolAnyFile::eachMissingTableIsNamed_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QStringList>("unaffected");
    QTest::newRow("cars") << "cars" << QStringList {"audit"};
    QTest::newRow("laps") << "laps" << QStringList {"history", "audit"};
    QTest::newRow("maintainance") << "maintainance" << QStringList();
    QTest::newRow("personal") << "personal" << QStringList {"due", "forecast", "explain", "audit"};
    QTest::newRow("service_operations") << "service_operations" << QStringList {"audit"};
    QTest::newRow("service_reglament") << "service_reglament" << QStringList {"history", "audit"};
}

void TestToolAnyFile::eachMissingTableIsNamed()
{
    QFETCH(QString, table);
    QFETCH(QStringList, unaffected);
    {
        const auto database = createDatabase();
        fill(*database);
        database->exec("DROP TABLE " + table);
    }
    for (const QStringList &command : commands) {
        const Tool::Result result = runOn(command);
        if (unaffected.contains(command.first()))
            QCOMPARE(result.exitCode, 0);
        else
            verifyFaultNamed(command, result, "tables are missing: " + table, "table-missing");
    }
}

void TestToolAnyFile::aGoodFileStaysAsItIs_data()
{
    QTest::addColumn<bool>("hasRows");
    QTest::addColumn<bool>("isFolderReadOnly");
    QTest::newRow("rows") << true << false;
    QTest::newRow("no rows") << false << false;
    QTest::newRow("read-only folder") << true << true;
}

void TestToolAnyFile::aGoodFileStaysAsItIs()
{
    QFETCH(bool, hasRows);
    QFETCH(bool, isFolderReadOnly);
    {
        const auto database = createDatabase();
        if (hasRows)
            fill(*database);
    }
    const QString folder = QFileInfo(home().databasePath()).path();
    const auto readOnly = QFile::ReadOwner | QFile::ExeOwner;
    if (isFolderReadOnly)
        QVERIFY(QFile::setPermissions(folder, readOnly));
    const QStringList before = Tool::folderState(home().databasePath());
    for (const QStringList &command : commands) {
        const Tool::Result result = runOn(command);
        const bool hasNoKart = !hasRows && command.first() == "explain";
        QCOMPARE(result.exitCode, hasNoKart ? 1 : 0);
        QCOMPARE(result.errors.isEmpty(), !hasNoKart);
        QCOMPARE(Tool::folderState(home().databasePath()), before);
    }
    QVERIFY(QFile::setPermissions(folder, readOnly | QFile::WriteOwner));
}

void TestToolAnyFile::aWriteAheadLogStaysAsItIs_data()
{
    QTest::addColumn<QString>("state");
    QTest::newRow("a host has it open") << "open";
    QTest::newRow("closed") << "closed";
    QTest::newRow("copied with log and index") << "copied";
    QTest::newRow("copied without the index") << "without index";
}

void TestToolAnyFile::aWriteAheadLogStaysAsItIs()
{
    QFETCH(QString, state);
    auto database = createDatabase();
    database->exec("PRAGMA journal_mode=WAL");
    fill(*database);
    QString path = home().databasePath();
    if (state == "closed") {
        database.reset();
    } else if (state != "open") {
        QVERIFY(QDir().mkpath(home().path() + "/copy"));
        path = home().path() + "/copy/garage.sqlite";
        for (const char *suffix : {"", "-wal", "-shm"}) {
            if (state != "without index" || suffix != QByteArray("-shm"))
                QVERIFY(QFile::copy(home().databasePath() + suffix, path + suffix));
        }
    }
    const QStringList before = Tool::folderState(path);
    QCOMPARE(before.size(), state == "closed" ? 1 : state == "without index" ? 2 : 3);
    for (const QStringList &command : commands) {
        const Tool::Result result = runOn(command, {"--database", path});
        QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
        QVERIFY(result.output.contains("Sodi") || !kartCommands.contains(command.first()));
        QCOMPARE(Tool::folderState(path), before);
    }
}

void TestToolAnyFile::aLockIsWaitedFor()
{
    const auto database = createDatabase();
    fill(*database);
    for (const QStringList &command : commands) {
        const DatabaseLock lock(home().databasePath(), DatabaseLock::Exclusive, 700);
        const Tool::Result result = runOn(command);
        QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
        QVERIFY(result.output.contains("Sodi") || !kartCommands.contains(command.first()));
    }
}

void TestToolAnyFile::aLockThatStaysIsReported()
{
    const auto database = createDatabase();
    fill(*database);
    const DatabaseLock lock(home().databasePath(), DatabaseLock::Exclusive, 60000);
    for (const QStringList &command : {QStringList("due"), QStringList {"backup", "FOLDER"}}) {
        QElapsedTimer timer;
        timer.start();
        verifyFaultNamed(command, runOn(command), "keeps " + home().databasePath() + " locked", "locked");
        QVERIFY(timer.elapsed() > 4000);
    }
}

void TestToolAnyFile::aBusyHostDoesNotDisturb()
{
    {
        const auto database = createDatabase();
        fill(*database);
    }
    BusyHost host(home().databasePath());
    for (int i = 0; i < 20; ++i) {
        const Tool::Result result = Tool::run({"due", "--format", "json"});
        const QJsonObject row = result.rows().first().toObject();
        const bool isWhole = result.exitCode == 0
            && row.value("laps").toInt() == 3 + BusyHost::lapsPerRun * (row.value("runs").toInt() - 1);
        QVERIFY2(isWhole, qPrintable(result.errors + result.output));
    }
    QStringList failed;
    for (const QStringList &command : commands) {
        const Tool::Result result = runOn(command);
        if (result.exitCode != 0)
            failed.append(command.first() + ": " + result.errors + result.output);
    }
    host.stop();
    QVERIFY2(failed.isEmpty(), qPrintable(failed.join('\n')));
    QVERIFY(host.commits() > 5);
}

void TestToolAnyFile::hostileNamesComeThroughWhole_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("csvCell");
    QTest::newRow("markup") << "<script>alert(1)</script>"
                            << "<script>alert(1)</script>";
    QTest::newRow("quotes") << "a \"b\" 'c'"
                            << "\"a \"\"b\"\" 'c'\"";
    QTest::newRow("line feeds") << "a\r\nb\nc"
                                << "\"a\r\nb\nc\"";
    QTest::newRow("format") << "%s %1 %n %%"
                            << "%s %1 %n %%";
    QTest::newRow("emoji") << "👩‍🔧🏁"
                           << "👩‍🔧🏁";
    QTest::newRow("formula") << "=1+1"
                             << "'=1+1";
    QTest::newRow("escape") << "\033[2J\a"
                            << "\033[2J\a";
    QTest::newRow("10,000 letters") << QString(10000, QChar(0x416)) << QString(10000, QChar(0x416));
}

void TestToolAnyFile::hostileNamesComeThroughWhole()
{
    QFETCH(QString, name);
    QFETCH(QString, csvCell);
    {
        const auto database = createDatabase();
        database->addCar(1, name, name);
        database->addOperation(1, name);
        database->addLimit(name, 1, 0, 0, 2);
        database->addRecord(1, 1, "2026-03-01T10:00:00.000Z", 0, name);
        database->addRecord(1, -1, "2026-03-01T10:00:00.000Z", 0, name);
    }
    for (const char *command : {"due", "forecast", "history"}) {
        const QJsonObject row = Tool::run({command, "--format", "json"}).rows().last().toObject();
        for (const char *key : {"carNumber", "carModel", "comment"})
            QCOMPARE(row.value(key).toString(), name);
        const Tool::Result csv = Tool::run({command, "--format", "csv"});
        QCOMPARE(csv.exitCode, 0);
        QVERIFY(csv.output.contains(QByteArray(',' + csvCell.toUtf8() + ',')));
        const Tool::Result table = Tool::run({command});
        QCOMPARE(table.exitCode, 0);
        QVERIFY(!table.output.contains('\033'));
        for (const QByteArray &line : table.output.split('\n'))
            QVERIFY(QString::fromUtf8(line).size() < 400);
    }
    // The last three show names as examples only.
    TestDatabase(home().databasePath(), false).addLimit(name + "2", 99, 0, 0, 2);
    for (const QStringList &command : commands.mid(5)) {
        const Tool::Result result = runOn(command);
        QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
        QVERIFY(!result.output.contains('\033'));
        for (const QByteArray &line : result.output.split('\n'))
            QVERIFY(QString::fromUtf8(line).size() < 400);
    }
    const QJsonArray findings = runOn({"doctor", "--format", "json"}).json().value("findings").toArray();
    QVERIFY(std::any_of(findings.begin(), findings.end(), [&name](const QJsonValue &finding) {
        return finding.toObject().value("examples").toArray().contains(QString(name + "2"));
    }));
    const Tool::Result explained = Tool::run({"explain", name, "1"});
    QVERIFY2(explained.exitCode == 0, qPrintable(explained.errors));
    const QString shown = TextWidth::printable(name);
    const QString subject = "Kart " + shown + " (" + shown + ", id 1), \"" + shown + "\" (operation 1).\n";
    QVERIFY2(explained.output.startsWith(subject.toUtf8()), explained.output.constData());
}

void TestToolAnyFile::anUnfinishedOutputLeavesNothing()
{
    {
        const auto database = createDatabase();
        fill(*database);
    }
    const QString output = home().path() + "/due.csv";
    QCOMPARE(Tool::run({"due", "--format", "csv", "--output", output}).exitCode, 0);
    QFile file(output);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().startsWith("carId,"));
    const QStringList before = Tool::folderState(output);
    QCOMPARE(Tool::run({"due", "--database", "/nowhere", "--output", output}).exitCode, 3);
    QCOMPARE(Tool::folderState(output), before);
}

void TestToolAnyFile::outputThatCannotBeWrittenIsReported()
{
    {
        const auto database = createDatabase();
        fill(*database);
    }
    for (const QString &output : QStringList {home().path() + "/none/due.csv", home().path(), "/dev/full"}) {
        const Tool::Result result = Tool::run({"due", "--output", output});
        QCOMPARE(result.exitCode, 5);
        QVERIFY2(result.errors.contains(output), qPrintable(result.errors));
    }
    QVERIFY(!QFile::exists(home().path() + "/none"));
    const Tool::Result full = Tool::run({"due"}, {}, "/dev/full");
    QCOMPARE(full.exitCode, 5);
    QVERIFY2(full.errors.contains("cannot write to standard output"), qPrintable(full.errors));
}

void TestToolAnyFile::aDatabaseIsNeverReplaced()
{
    fill(*createDatabase());
    const QStringList before = Tool::folderState(home().databasePath());
    const Tool::Result result = Tool::run({"due", "--output", home().databasePath()});
    QCOMPARE(result.exitCode, 5);
    QVERIFY2(result.errors.contains("it is a database"), qPrintable(result.errors));
    QCOMPARE(Tool::folderState(home().databasePath()), before);
}

/// What SQLite leaves when a host dies in the middle of a commit.
void TestToolAnyFile::anInterruptedWriteIsReported()
{
    const auto database = createDatabase();
    fill(*database);
    const QString copy = home().path() + "/copy/garage.sqlite";
    QVERIFY(QDir().mkpath(QFileInfo(copy).path()));
    database->exec("PRAGMA cache_size=1");
    database->exec("BEGIN EXCLUSIVE");
    for (int lap = 0; lap < 2000; ++lap)
        database->addLap(1, 1, "2026-03-02T11:00:00.000Z", 60000);
    for (const char *suffix : {"", "-journal"})
        QVERIFY(QFile::copy(home().databasePath() + suffix, copy + suffix));
    database->exec("ROLLBACK");

    const QStringList before = Tool::folderState(copy);
    QCOMPARE(before.size(), 2);
    for (const QStringList &command : commands) {
        verifyFaultNamed(command, runOn(command, {"--database", copy}), "was left in the middle of a write",
                         "unfinished-write");
        QCOMPARE(Tool::folderState(copy), before);
    }
}

GARAGE_TEST_WITHOUT_WINDOWS(TestToolAnyFile)
#include "tst_toolanyfile.moc"
