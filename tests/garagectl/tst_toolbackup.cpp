#include "support/busyhost.h"
#include "support/databaselock.h"
#include "support/garagetest.h"
#include "tool.h"

#include <QDir>
#include <QFile>
#include <QProcess>

namespace {

void fill(const TestDatabase &database)
{
    database.addCar(1, "7", "Sodi");
    database.addOperation(1, "Chain");
    database.addLimit("Sodi", 1, 0, 0, 2);
    database.addRecord(1, 1, "2026-03-01T10:00:00.000Z", 1);
    for (int lap = 0; lap < 3; ++lap)
        database.addLap(1, 1, QString("2026-03-02T10:0%1:00.000Z").arg(lap), 60000);
}

} // namespace

/// The copies that garagectl makes, by the real program.
class TestToolBackup : public GarageTest
{
    Q_OBJECT
private slots:
    void init();
    void theCopyHasEverything_data();
    void theCopyHasEverything();
    void anotherFormOfTheFileIsCopied_data();
    void anotherFormOfTheFileIsCopied();
    void onlyOwnCopiesAreThinned();
    void aDamagedDatabaseTakesNothingAway_data();
    void aDamagedDatabaseTakesNothingAway();
    void aFullDiskLeavesNoFile();
    void anInterruptionLeavesNoFile();
    void aCopyBesideABusyHostIsWhole();
    void theFolderMustBeAnother();
    void aCheckedCopyCanBeRestored();
    void aDamagedCopyFailsItsCheck();

private:
    QString folder() { return home().path() + "/копии 'a'"; }
    QStringList copies();
    void makeCopies(const QStringList &names);
};

void TestToolBackup::init()
{
    GarageTest::init();
    QVERIFY(QDir().mkpath(folder()));
}

QStringList TestToolBackup::copies()
{
    return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

void TestToolBackup::makeCopies(const QStringList &names)
{
    for (const QString &name : names) {
        QFile file(folder() + '/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("old");
    }
}

void TestToolBackup::theCopyHasEverything_data()
{
    QTest::addColumn<QString>("journalMode");
    QTest::newRow("rollback journal") << "DELETE";
    QTest::newRow("write-ahead log") << "WAL";
}

void TestToolBackup::theCopyHasEverything()
{
    QFETCH(QString, journalMode);
    const auto database = createDatabase();
    database->exec("PRAGMA journal_mode=" + journalMode);
    fill(*database);
    database->exec("CREATE TABLE \"the \"\"host's\"\" own\" (x)");
    QVERIFY(QFile::setPermissions(home().databasePath(), QFile::ReadOwner | QFile::WriteOwner));
    const QStringList before = Tool::folderState(home().databasePath());

    const Tool::Result result = Tool::run({"backup", folder(), "--format", "json"});
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    QCOMPARE(Tool::schemaFaults("backup", result.output), QString());
    QCOMPARE(Tool::folderState(home().databasePath()), before);
    QCOMPARE(copies().size(), 1);
    QVERIFY2(QRegularExpression("^ruvalo-20\\d{6}-\\d{6}\\.sqlite$").match(copies().first()).hasMatch(),
             qPrintable(copies().first()));
    const QString path = folder() + '/' + copies().first();
    QCOMPARE(result.json().value("file").toString(), path);
    QCOMPARE(result.json().value("rows").toObject().value("laps"), QJsonValue(3));
    QCOMPARE(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

    const TestDatabase copy(path, false);
    for (const char *table :
         {"cars", "laps", "maintainance", "service_operations", "service_reglament", "sqlite_sequence"}) {
        const QString rows = "SELECT * FROM " + QString(table);
        QCOMPARE(copy.rows(rows), database->rows(rows));
    }
    const QString schema = "SELECT sql FROM sqlite_master ORDER BY sql";
    QCOMPARE(copy.rows(schema), database->rows(schema));
}

void TestToolBackup::anotherFormOfTheFileIsCopied_data()
{
    QTest::addColumn<bool>("hasLog");
    QTest::newRow("log closed") << false;
    QTest::newRow("log without its index") << true;
}

void TestToolBackup::anotherFormOfTheFileIsCopied()
{
    QFETCH(bool, hasLog);
    auto database = createDatabase();
    database->exec("PRAGMA journal_mode=WAL");
    fill(*database);
    QVERIFY(QDir().mkpath(home().path() + "/source"));
    const QString source = home().path() + "/source/garage.sqlite";
    if (hasLog)
        QVERIFY(QFile::copy(home().databasePath() + "-wal", source + "-wal"));
    else
        database.reset();
    QVERIFY(QFile::copy(home().databasePath(), source));
    const QStringList before = Tool::folderState(source);
    const Tool::Result result = Tool::run({"backup", folder(), "--database", source, "--format", "json"});
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    QCOMPARE(result.json().value("rows").toObject().value("laps"), QJsonValue(3));
    QCOMPARE(Tool::folderState(source), before);
}

void TestToolBackup::onlyOwnCopiesAreThinned()
{
    fill(*createDatabase());
    const QStringList others {"ruvalo-2026.sqlite", "ruvalo-20200101-000000.sqlite.bak",
                              "my-ruvalo-20200101-000000.sqlite", "ruvalo.sqlite"};
    makeCopies(others
               + QStringList {"ruvalo-20200101-000000.sqlite", "ruvalo-20200103-000000.sqlite",
                              "ruvalo-20200102-000000.sqlite", "ruvalo-20991231-000000.sqlite"});
    QVERIFY(QFile::link("ruvalo.sqlite", folder() + "/ruvalo-20200101-000001.sqlite"));
    const Tool::Result result = Tool::run({"backup", folder(), "--keep", "3", "--format", "json"});
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    QCOMPARE(result.json().value("removed").toVariant().toStringList(),
             QStringList({"ruvalo-20200101-000000.sqlite", "ruvalo-20200102-000000.sqlite"}));
    for (const QString &kept : others
             + QStringList {"ruvalo-20200103-000000.sqlite", "ruvalo-20991231-000000.sqlite",
                            "ruvalo-20200101-000001.sqlite"})
        QVERIFY2(copies().contains(kept), qPrintable(kept));
    QVERIFY(QFile::exists(result.json().value("file").toString()));

    // The new copy stays, even if its name is not the last; the name of the first one may be taken.
    const Tool::Result one = Tool::run({"backup", folder(), "--keep", "1", "--format", "json"});
    QVERIFY2(one.exitCode == 0, qPrintable(one.errors));
    QVERIFY(QFile::exists(one.json().value("file").toString()));
    QVERIFY(!QFile::exists(result.json().value("file").toString()));
}

void TestToolBackup::aDamagedDatabaseTakesNothingAway_data()
{
    QTest::addColumn<QString>("damage");
    QTest::newRow("bytes") << "bytes";
    QTest::newRow("index") << "index";
    QTest::newRow("table missing") << "table";
}

void TestToolBackup::aDamagedDatabaseTakesNothingAway()
{
    QFETCH(QString, damage);
    {
        const auto database = createDatabase();
        fill(*database);
        if (damage == "table")
            database->exec("DROP TABLE laps");
        if (damage == "index") {
            // The index says less than the table.
            database->exec("PRAGMA writable_schema=ON");
            database->exec("UPDATE sqlite_master SET sql = 'CREATE INDEX laps_by_car ON laps (run_id)' "
                           "WHERE name = 'laps_by_car'");
        }
    }
    if (damage == "bytes") {
        QFile file(home().databasePath());
        QVERIFY(file.open(QIODevice::ReadWrite));
        file.seek(2 * 4096);
        file.write(QByteArray(4096, '\x7f'));
    }
    makeCopies({"ruvalo-20200101-000000.sqlite", "ruvalo-20200102-000000.sqlite"});
    const QStringList before = Tool::folderState(folder() + "/x");
    const Tool::Result result = Tool::run({"backup", folder(), "--keep", "1"});
    QCOMPARE(result.exitCode, 3);
    QCOMPARE(result.errors.count('\n'), 1);
    QVERIFY(result.output.isEmpty());
    QCOMPARE(Tool::folderState(folder() + "/x"), before);
}

void TestToolBackup::aFullDiskLeavesNoFile()
{
    {
        const auto database = createDatabase();
        fill(*database);
    }
    // A limit on the size of files simulates a full disk.
    QProcess shell;
    shell.start("sh", {"-c", "trap '' XFSZ; ulimit -f 8; exec \"$0\" backup \"$1\"", GARAGECTL, folder()});
    QVERIFY(shell.waitForFinished());
    const QString errors = QString::fromUtf8(shell.readAllStandardError());
    QCOMPARE(shell.exitStatus(), QProcess::NormalExit);
    QVERIFY2(shell.exitCode() == 5, qPrintable(errors));
    QVERIFY2(errors.contains("the copy could not be written"), qPrintable(errors));
    QVERIFY(copies().isEmpty());
}

void TestToolBackup::anInterruptionLeavesNoFile()
{
    const auto database = createDatabase();
    fill(*database);
    database->exec("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 400000) "
                   "INSERT INTO laps (car_id, run_id, lap_timestamp, sum_sectors) "
                   "SELECT 1, i, '2026-03-02T10:00:00.000Z', 60000 FROM n");
    QProcess tool;
    tool.start(GARAGECTL, {"backup", folder()});
    QVERIFY(tool.waitForStarted());
    QTRY_VERIFY(!copies().isEmpty() || tool.state() == QProcess::NotRunning);
    tool.terminate();
    QVERIFY(tool.waitForFinished());
    QCOMPARE(tool.exitStatus(), QProcess::CrashExit); // by the signal
    QVERIFY2(copies().isEmpty(), qPrintable(copies().join(' ')));
}

void TestToolBackup::aCopyBesideABusyHostIsWhole()
{
    {
        const auto database = createDatabase();
        fill(*database);
    }
    BusyHost host(home().databasePath());
    const Tool::Result result = Tool::run({"backup", folder(), "--format", "json"});
    host.stop();
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    QCOMPARE((result.json().value("rows").toObject().value("laps").toInt() - 3) % BusyHost::lapsPerRun, 0);
    QVERIFY(host.commits() > 0);
}

void TestToolBackup::theFolderMustBeAnother()
{
    fill(*createDatabase());
    const QString own = QFileInfo(home().databasePath()).path();
    const QStringList before = Tool::folderState(home().databasePath());
    QCOMPARE(Tool::run({"backup", own + "/."}).exitCode, 1);
    QCOMPARE(Tool::run({"backup"}).exitCode, 1);
    QCOMPARE(Tool::run({"backup", folder(), "--check", home().databasePath()}).exitCode, 1);
    QCOMPARE(Tool::run({"backup", folder(), "--keep", "0"}).exitCode, 1);
    QCOMPARE(Tool::run({"backup", home().path() + "/none"}).exitCode, 5);
    QCOMPARE(Tool::folderState(home().databasePath()), before);
    QVERIFY(copies().isEmpty());
}

void TestToolBackup::aCheckedCopyCanBeRestored()
{
    {
        const auto database = createDatabase();
        fill(*database);
        database->exec("PRAGMA journal_mode=WAL");
    }
    QCOMPARE(Tool::run({"backup", folder()}).exitCode, 0);
    const QString copy = folder() + '/' + copies().first();
    TestDatabase(home().databasePath(), false).exec("DELETE FROM laps");

    const Tool::Result text = Tool::run({"backup", "--check", copy});
    QVERIFY2(text.exitCode == 0, qPrintable(text.errors));
    QVERIFY(text.output.contains("Close the host"));
    const Tool::Result json = Tool::run({"backup", "--check", copy, "--format", "json"});
    QCOMPARE(Tool::schemaFaults("backup", json.output), QString());
    QStringList commands;
    for (const QJsonValue &step : json.json().value("restoreSteps").toArray())
        commands += step.toString().split('\n').mid(1);
    QCOMPARE(commands.size(), 5);
    QVERIFY(commands.takeLast().startsWith("garagectl doctor "));

    // The steps as written, by a shell.
    QProcess shell;
    shell.start("sh", {"-e", "-c", commands.join('\n')});
    QVERIFY(shell.waitForFinished());
    QVERIFY2(shell.exitCode() == 0, qPrintable(QString::fromUtf8(shell.readAllStandardError())));
    const TestDatabase restored(home().databasePath(), false);
    QCOMPARE(restored.value("SELECT count(*) FROM laps"), QVariant(3));
    QCOMPARE(restored.value("PRAGMA journal_mode"), QVariant("wal"));
}

void TestToolBackup::aDamagedCopyFailsItsCheck()
{
    {
        const auto database = createDatabase();
        fill(*database);
    }
    QCOMPARE(Tool::run({"backup", folder()}).exitCode, 0);
    const QString copy = folder() + '/' + copies().first();
    QFile file(copy);
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.resize(3 * 4096);
    const Tool::Result result = Tool::run({"backup", "--check", copy});
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.errors.contains("is damaged"), qPrintable(result.errors));
    QVERIFY(result.output.isEmpty());
    QCOMPARE(Tool::run({"backup", "--check", home().path() + "/none"}).exitCode, 3);
}

GARAGE_TEST_WITHOUT_WINDOWS(TestToolBackup)
#include "tst_toolbackup.moc"
