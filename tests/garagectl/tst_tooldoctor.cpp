#include "support/databaselock.h"
#include "support/garagetest.h"
#include "tool.h"

#include "garagectl/audit/audit.h"
#include "garagectl/doctor/catalogue.h"
#include "garagectl/doctor/costcheck.h"
#include "garagectl/doctor/storage.h"
#include "garagectl/doctor/timecheck.h"
#include "garagectl/output/textwidth.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace {

/// Nothing is wrong with it.
void fill(const TestDatabase &database)
{
    database.exec("PRAGMA journal_mode=WAL");
    database.addCar(1, "7", "Sodi");
    database.addOperation(1, "Chain");
    database.addLimit("Sodi", 1, 0, 0, 2);
    database.addRecord(1, 1, "2020-03-01T10:00:00.000Z", 1);
    database.addRecord(1, -1, "2020-03-01T11:00:00.000Z", 0);
    for (int lap = 0; lap < 3; ++lap)
        database.addLap(1, 1, QString("2020-03-02T10:0%1:00.000Z").arg(lap), 60000);
}

struct Case
{
    QString id;
    QStringList breaking; ///< statements that cause the finding
    QStringList repairing = {}; ///< empty: the remedy's own statements
    QStringList others = {}; ///< findings that come with it
    QStringList left = {}; ///< findings after the repair
};

/// Statements that build a table anew with other columns.
QStringList rebuilt(const QString &table, const QString &columns, const QString &selected = "*",
                    const QString &options = {})
{
    return {"ALTER TABLE " + table + " RENAME TO old",
            "CREATE TABLE " + table + " (" + columns + ") " + options,
            "INSERT INTO " + table + " SELECT " + selected + " FROM old", "DROP TABLE old"};
}

const QString carColumns = "id INTEGER PRIMARY KEY, num TEXT, name TEXT";
const QString operationColumns = "id INTEGER PRIMARY KEY AUTOINCREMENT, operation_name TEXT";
const QString limitColumns =
    "model TEXT, operation_id INTEGER, time_limit INTEGER, runs_limit INTEGER, laps_limit INTEGER";
const QString lapColumns =
    "lap_id INTEGER PRIMARY KEY, car_id INTEGER, run_id INTEGER, lap_timestamp %1, sum_sectors INTEGER";
const QString recordColumns = "id INTEGER PRIMARY KEY AUTOINCREMENT, car_id INTEGER, operation_id INTEGER, "
                              "operation_time %1, person_id INTEGER, person_name TEXT, comment TEXT, "
                              "operation_state INTEGER %2, remote_id INTEGER";
const QString lapIndex = "CREATE INDEX laps_by_car ON laps (car_id, lap_timestamp, sum_sectors, run_id)";
const QString remoteIndex = "CREATE INDEX maintainance_by_remote_id ON maintainance (remote_id)";

QStringList lapAt(const QString &value)
{
    return {"UPDATE laps SET lap_timestamp = " + value + " WHERE lap_id = 2"};
}

QStringList recordAt(const QString &value)
{
    return {"UPDATE maintainance SET operation_time = " + value + " WHERE id = 1"};
}

QVector<Case> schemaCases()
{
    return {
        {"journal-mode", {"PRAGMA journal_mode=DELETE"}},
        {"table-missing",
         {"DROP TABLE personal"},
         {"CREATE TABLE personal (id INTEGER PRIMARY KEY, last_name TEXT, first_name TEXT, mid_name TEXT)"}},
        {"column-missing",
         {"ALTER TABLE maintainance RENAME COLUMN remote_id TO remoteId"},
         {"ALTER TABLE maintainance RENAME COLUMN remoteId TO remote_id"}},
        {"column-type", rebuilt("cars", "id INTEGER PRIMARY KEY, num INTEGER, name TEXT"),
         rebuilt("cars", carColumns)},
        {"id-not-key", rebuilt("service_operations", "id INT PRIMARY KEY, operation_name TEXT"),
         rebuilt("service_operations", operationColumns)},
        {"id-not-key",
         rebuilt("service_operations", "id INTEGER PRIMARY KEY, operation_name TEXT", "*", "WITHOUT ROWID"),
         rebuilt("service_operations", operationColumns)},
        {"ids-reused",
         rebuilt("service_operations", "id INTEGER PRIMARY KEY /* no AUTOINCREMENT */, operation_name TEXT")},
        {"state-default",
         rebuilt("maintainance", recordColumns.arg("TEXT", "DEFAULT 0")) + QStringList {remoteIndex}},
        {"required-column",
         rebuilt("service_operations", operationColumns + ", kind TEXT NOT NULL", "id, operation_name, 'x'"),
         rebuilt("service_operations", operationColumns, "id, operation_name")},
        {"limits-key", rebuilt("service_reglament", limitColumns)},
        {"limits-key",
         {"CREATE UNIQUE INDEX narrow ON service_reglament (operation_id)"},
         {"DROP INDEX narrow"}},
        {"limits-repeated",
         rebuilt("service_reglament", limitColumns)
             + QStringList {"INSERT INTO service_reglament SELECT * FROM service_reglament"},
         {},
         {"limits-key"},
         {"limits-key"}},
        {"limits-without-model",
         {"INSERT INTO cars VALUES (2, '8', NULL)", "INSERT INTO service_reglament VALUES (NULL, 1, 0, 0, 0)",
          "INSERT INTO service_reglament VALUES (NULL, 1, 0, 0, 0)"}},
        {"laps-index", {"DROP INDEX laps_by_car"}},
        {"laps-index-narrow",
         {"DROP INDEX laps_by_car", "CREATE INDEX narrow ON laps (car_id, lap_timestamp)"}},
        {"remote-index", {"DROP INDEX maintainance_by_remote_id"}},
    };
}

QVector<Case> timeCases()
{
    const QStringList numericLaps = rebuilt("laps", lapColumns.arg("DATETIME")) + QStringList {lapIndex};
    const QStringList numericRecords =
        rebuilt("maintainance", recordColumns.arg("DATETIME", "DEFAULT 1")) + QStringList {remoteIndex};
    const QString good = "'2020-03-02T10:00:00.000Z'";
    return {
        {"lap-time-number", numericLaps + lapAt("1583143200")},
        {"lap-time-number", numericLaps + lapAt("1583143200123")},
        {"lap-time-empty", lapAt("NULL")},
        {"lap-time-empty", lapAt("''")},
        {"lap-time-digits", lapAt("'۲۰۲۰-۰۳-۰۲T۱۰:۰۰:۰۰.۰۰۰Z'")},
        {"lap-time-unreadable", lapAt("'02.03.2020 10:00'"), lapAt(good)},
        {"lap-time-unreadable", lapAt("'2020-02-31T10:00:00.000Z'"), lapAt(good)},
        {"lap-time-offset", lapAt("'2020-03-02T13:00:00.000+03:00'")},
        {"lap-time-blank", lapAt("'2020-03-02 10:00:00.000Z'")},
        {"lap-time-zoneless", lapAt("'2020-03-02T10:00:00.000'")},
        {"lap-time-precision", lapAt("'2020-03-02T10:00:00Z'")},
        {"lap-time-future", lapAt("'2099-03-02T10:00:00.000Z'"), lapAt(good)},
        {"record-time-number", numericRecords + recordAt("1583143200")},
        {"record-time-empty", recordAt("''"), recordAt(good)},
        {"record-time-digits", recordAt("'۲۰۲۰-۰۳-۰۲T۱۰:۰۰:۰۰.۰۰۰Z'")},
        {"record-time-unreadable", recordAt("x'00'"), recordAt(good)},
        {"record-time-offset", recordAt("'2020-03-02T13:00:00.000+03:00'")},
        {"record-time-blank", recordAt("'2020-03-02 10:00:00.000Z'")},
        {"record-time-zoneless", recordAt("'2020-03-02T10:00:00.000'")},
        {"record-time-precision", recordAt("'2020-03-02T10:00Z'")},
        {"record-time-future", recordAt("'2099-03-02T10:00:00.000Z'"), recordAt(good)},
    };
}

QVector<Case> rowCases()
{
    const QString record =
        "INSERT INTO maintainance (car_id, operation_id, operation_time, remote_id) VALUES ";
    const QString time = "'2020-03-01T10:00:00.000Z'";
    return {
        {"laps-unknown-car", {"UPDATE laps SET car_id = 99 WHERE lap_id = 1"}},
        {"laps-unknown-car", {"UPDATE laps SET car_id = NULL WHERE lap_id = 1"}},
        {"records-unknown-car", {record + "(99, 1, " + time + ", NULL)"}},
        {"records-unknown-operation", {record + "(1, 99, " + time + ", NULL)"}},
        {"limits-unknown-operation", {"INSERT INTO service_reglament VALUES ('Sodi', 99, 1, 0, 0)"}},
        {"limits-unknown-model", {"INSERT INTO service_reglament VALUES ('Rotax', 1, 1, 0, 0)"}},
        {"never-recorded",
         {"INSERT INTO cars VALUES (2, '8', 'Sodi')"},
         {"INSERT INTO maintainance (car_id, operation_id, operation_time) VALUES (2, 1, " + time + ")"}},
        {"complaints-repeated",
         {"INSERT INTO maintainance (car_id, operation_id, operation_time, operation_state) VALUES (1, -1, "
          + time + ", 0)"},
         {"DELETE FROM maintainance WHERE id = 3"}},
        {"state-unknown", {"UPDATE maintainance SET operation_state = NULL WHERE id = 1"}},
        {"remote-id-repeated",
         {"UPDATE maintainance SET remote_id = 900"},
         {"UPDATE maintainance SET remote_id = NULL WHERE id = 2"}},
        {"remote-id-missing", {"UPDATE maintainance SET remote_id = -1"}},
        {"id-repeated",
         rebuilt("cars", "id INTEGER, num TEXT, name TEXT")
             + QStringList {"INSERT INTO cars VALUES (1, '8', '')"},
         {"DELETE FROM cars WHERE num = '8'"}},
        {"id-too-large",
         {"INSERT INTO cars VALUES (3000000000, '8', '')"},
         {"DELETE FROM cars WHERE id > 2147483647"}},
    };
}

struct StorageCase
{
    QString id;
    std::function<void(Storage &)> breaking;
};

Storage goodStorage()
{
    Storage storage;
    storage.kind = FileState::WriteAheadLog;
    storage.hasFolder = true;
    storage.mayWriteFile = true;
    storage.mayWriteFolder = true;
    storage.folders = QStringList {"/home/garage", "/home", "/"};
    storage.fileSystem = "ext4";
    storage.fileBytes = 1000000000;
    storage.freeBytes = 2000000000;
    return storage;
}

QVector<StorageCase> storageCases()
{
    return {{"file-unreadable", [](Storage &storage) { storage.kind = FileState::NotReadable; }},
            {"file-read-only", [](Storage &storage) { storage.mayWriteFile = false; }},
            {"folder-read-only", [](Storage &storage) { storage.mayWriteFolder = false; }},
            {"log-large", [](Storage &storage) { storage.logBytes = 100000000; }},
            {"disk-full", [](Storage &storage) { storage.freeBytes = 1000; }},
            {"disk-space", [](Storage &storage) { storage.freeBytes = 900000000; }},
            {"network-folder", [](Storage &storage) { storage.fileSystem = "cifs"; }},
            {"synchronised-folder", [](Storage &storage) { storage.synchronisedFolder = "/home/garage"; }}};
}

/// Those of the tests below, each of which shows one or more of them come and go.
const QStringList fileIds {"folder-missing", "file-missing", "not-a-file",       "file-empty",
                           "not-a-database", "damaged",      "unfinished-write", "stray-log",
                           "locked",         "lock-held",    "slow-statement"};

QStringList idsOf(const QJsonArray &findings)
{
    QStringList ids;
    for (const QJsonValue &finding : findings)
        ids.append(finding.toObject().value("id").toString());
    ids.sort();
    return ids;
}

QJsonArray examined(const QStringList &options = {})
{
    const Tool::Result result = Tool::run(QStringList {"doctor", "--format", "json"} + options);
    if (result.exitCode != 0 && result.exitCode != 4)
        return {QJsonObject {
            {"id", QString("exit code %1: %2").arg(QString::number(result.exitCode), result.errors)}}};
    return result.json().value("findings").toArray();
}

QStringList foundIds(const QStringList &options = {})
{
    return idsOf(examined(options));
}

/// The statements that a finding proposes.
QStringList remedyOf(const QString &id, const QJsonArray &findings)
{
    for (const QJsonValue &finding : findings) {
        if (finding.toObject().value("id") != id)
            continue;
        const QString remedy = finding.toObject().value("remedy").toString();
        return remedy.section('\n', 1).split(";", Qt::SkipEmptyParts);
    }
    return {};
}

} // namespace

/// Every finding of garagectl doctor comes when the fault is there, and goes when it is repaired.
class TestToolDoctor : public GarageTest
{
    Q_OBJECT
private slots:
    void aHealthyDatabaseHasNoFindings();
    void aFaultIsFoundAndItsRemedyHelps_data();
    void aFaultIsFoundAndItsRemedyHelps();
    void aPlaceIsJudged_data();
    void aPlaceIsJudged();
    void theFileMustBeThere();
    void aFileThatIsNoDatabaseIsFound_data();
    void aFileThatIsNoDatabaseIsFound();
    void damageIsFound();
    void anUnfinishedWriteIsFound();
    void aStrayLogIsFoundAndNothingIsMade();
    void aLockIsFound_data();
    void aLockIsFound();
    void aSynchronisedFolderIsKnown();
    void slowStatementsAreNamedAndStopped();
    void timesAreToldApart_data();
    void timesAreToldApart();
    void theOutputFollowsItsSchema();
    void everyFindingIsTestedAndDocumented();
    void titlesFitTheirColumn();
};

void TestToolDoctor::aHealthyDatabaseHasNoFindings()
{
    fill(*createDatabase());
    const Tool::Result result = Tool::run({"doctor"});
    QCOMPARE(result.output, QByteArray("Nothing is wrong.\n"));
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.errors, QString());
}

void TestToolDoctor::aFaultIsFoundAndItsRemedyHelps_data()
{
    QTest::addColumn<Case>("fault");
    int number = 0;
    for (const Case &fault : schemaCases() + timeCases() + rowCases())
        QTest::newRow(qPrintable(QString("%1 %2").arg(fault.id).arg(++number))) << fault;
}

void TestToolDoctor::aFaultIsFoundAndItsRemedyHelps()
{
    QFETCH(Case, fault);
    const auto database = createDatabase();
    fill(*database);
    for (const QString &statement : fault.breaking)
        database->exec(statement);
    const QStringList before = Tool::folderState(home().databasePath());
    const QJsonArray findings = examined();
    QCOMPARE(Tool::folderState(home().databasePath()), before);
    QStringList expected = fault.others + QStringList {fault.id};
    expected.sort();
    QCOMPARE(idsOf(findings), expected);

    const QStringList repairing = fault.repairing.isEmpty() ? remedyOf(fault.id, findings) : fault.repairing;
    QVERIFY(!repairing.isEmpty());
    for (const QString &statement : repairing)
        database->exec(statement);
    QCOMPARE(foundIds().join(' '), fault.left.join(' '));
}

void TestToolDoctor::aPlaceIsJudged_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < storageCases().size(); ++i)
        QTest::newRow(qPrintable(storageCases().at(i).id)) << i;
}

void TestToolDoctor::aPlaceIsJudged()
{
    QFETCH(int, index);
    const StorageCase fault = storageCases().at(index);
    Storage storage = goodStorage();
    QVERIFY(StorageCheck::judge(storage).isEmpty());
    fault.breaking(storage);
    const Findings findings = StorageCheck::judge(storage);
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().id, fault.id);
}

void TestToolDoctor::theFileMustBeThere()
{
    QCOMPARE(foundIds(), QStringList("folder-missing"));
    QVERIFY(!QFile::exists(QFileInfo(home().databasePath()).path()));
    home().createDatabaseFolder();
    QCOMPARE(foundIds(), QStringList("file-missing"));
    QVERIFY(Tool::folderState(home().databasePath()).isEmpty());
    QVERIFY(QDir().mkpath(home().databasePath()));
    QCOMPARE(foundIds(), QStringList("not-a-file"));
    QVERIFY(QDir().rmdir(home().databasePath()));
    fill(*createDatabase());
    QCOMPARE(foundIds().join(' '), QStringList().join(' '));
}

void TestToolDoctor::aFileThatIsNoDatabaseIsFound_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("id");
    QTest::newRow("empty") << QByteArray() << "file-empty";
    QTest::newRow("text") << QByteArray(5000, 'x') << "not-a-database";
    QTest::newRow("header and garbage")
        << QByteArray("SQLite format 3", 16) + QByteArray(5000, 'x') << "not-a-database";
}

void TestToolDoctor::aFileThatIsNoDatabaseIsFound()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, id);
    QVERIFY(home().writeDatabaseFile(content));
    const QStringList before = Tool::folderState(home().databasePath());
    QStringList ids = foundIds();
    ids.removeAll("journal-mode"); // the header alone says so
    QCOMPARE(ids, QStringList(id));
    QCOMPARE(Tool::folderState(home().databasePath()), before);
}

void TestToolDoctor::damageIsFound()
{
    const auto database = createDatabase();
    fill(*database);
    database->exec("PRAGMA writable_schema=ON");
    database->exec(
        "UPDATE sqlite_master SET sql = replace(sql, 'run_id', 'lap_id') WHERE name = 'laps_by_car'");
    QVERIFY(foundIds().contains("damaged"));
    database->exec(
        "UPDATE sqlite_master SET sql = replace(sql, 'lap_id', 'run_id') WHERE name = 'laps_by_car'");
    QCOMPARE(foundIds().join(' '), QStringList().join(' '));
    database->exec("PRAGMA wal_checkpoint(TRUNCATE)");

    // A page of garbage.
    QFile file(home().databasePath());
    QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    file.seek(4 * 4096);
    file.write(QByteArray(4096, '\x7f'));
    file.close();
    const Tool::Result result = Tool::run({"doctor", "--format", "json"});
    QCOMPARE(result.exitCode, 4);
    QVERIFY(idsOf(result.json().value("findings").toArray()).contains("damaged"));
}

void TestToolDoctor::anUnfinishedWriteIsFound()
{
    const auto database = createDatabase();
    fill(*database);
    database->exec("PRAGMA journal_mode=DELETE");
    const QString copy = home().path() + "/copy/garage.sqlite";
    QVERIFY(QDir().mkpath(QFileInfo(copy).path()));
    database->exec("PRAGMA cache_size=1");
    database->exec("BEGIN EXCLUSIVE");
    for (int lap = 0; lap < 2000; ++lap)
        database->addLap(1, 1, "2020-03-02T11:00:00.000Z", 60000);
    for (const char *suffix : {"", "-journal"})
        QVERIFY(QFile::copy(home().databasePath() + suffix, copy + suffix));
    database->exec("ROLLBACK");
    const QStringList before = Tool::folderState(copy);
    QCOMPARE(foundIds({"--database", copy}), QStringList({"journal-mode", "unfinished-write"}));
    QCOMPARE(Tool::folderState(copy), before);
    TestDatabase(copy, false).rows("SELECT * FROM cars"); // undoes it
    QCOMPARE(foundIds({"--database", copy}), QStringList("journal-mode"));
}

void TestToolDoctor::aStrayLogIsFoundAndNothingIsMade()
{
    const auto other = std::make_unique<TestDatabase>(home().path() + "/other.sqlite");
    fill(*other);
    {
        const auto database = createDatabase();
        fill(*database);
        database->exec("PRAGMA journal_mode=DELETE");
    }
    const QString log = home().databasePath() + "-wal";
    QVERIFY(QFile::copy(home().path() + "/other.sqlite-wal", log));
    const QStringList before = Tool::folderState(home().databasePath());
    QCOMPARE(before.size(), 2);
    QVERIFY(foundIds().contains("stray-log"));
    for (const QStringList &command : QList<QStringList> {{"due"}, {"history"}, {"forecast"}})
        Tool::run(command);
    QCOMPARE(Tool::folderState(home().databasePath()), before);
    QVERIFY(QFile::remove(log));
    QCOMPARE(foundIds(), QStringList("journal-mode"));
}

void TestToolDoctor::aLockIsFound_data()
{
    QTest::addColumn<QString>("journalMode");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("ids");
    QTest::newRow("writer") << "DELETE" << int(DatabaseLock::Immediate)
                            << QStringList {"journal-mode", "lock-held"};
    QTest::newRow("reader") << "DELETE" << int(DatabaseLock::Shared)
                            << QStringList {"journal-mode", "lock-held"};
    QTest::newRow("all locked") << "DELETE" << int(DatabaseLock::Exclusive)
                                << QStringList {"journal-mode", "lock-held", "locked"};
    QTest::newRow("writer of a log") << "WAL" << int(DatabaseLock::Immediate) << QStringList {"lock-held"};
}

void TestToolDoctor::aLockIsFound()
{
    QFETCH(QString, journalMode);
    QFETCH(int, kind);
    QFETCH(QStringList, ids);
    const auto database = createDatabase();
    fill(*database);
    database->exec("PRAGMA journal_mode=" + journalMode);
    {
        const DatabaseLock lock(home().databasePath(), DatabaseLock::Kind(kind), 120000);
        const QJsonArray findings = examined();
        QCOMPARE(idsOf(findings), ids);
        for (const QJsonValue &finding : findings) {
            if (finding.toObject().value("id") == "lock-held") {
                const QString holder = finding.toObject().value("examples").toArray().first().toString();
                const QString self = QString::number(QCoreApplication::applicationPid());
                QVERIFY2(holder.startsWith(self + " ("), qPrintable(holder));
            }
        }
    }
    ids.removeAll("lock-held");
    ids.removeAll("locked");
    QCOMPARE(foundIds().join(' '), ids.join(' '));
}

void TestToolDoctor::aSynchronisedFolderIsKnown()
{
    const QStringList names {"Dropbox (Track)", "OneDrive - Track", "Яндекс.Диск", "nextcloud"};
    for (const QString &name : names) {
        const QString path = home().path() + '/' + name + "/DB/garage.sqlite";
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        fill(TestDatabase(path));
        QCOMPARE(foundIds({"--database", path}), QStringList("synchronised-folder"));
    }
    const QString path = home().path() + "/shared/DB/garage.sqlite";
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    fill(TestDatabase(path));
    QCOMPARE(foundIds({"--database", path}), QStringList());
    QVERIFY(QDir().mkpath(home().path() + "/shared/.stfolder"));
    QCOMPARE(foundIds({"--database", path}), QStringList("synchronised-folder"));
}

void TestToolDoctor::slowStatementsAreNamedAndStopped()
{
    const auto database = createDatabase();
    fill(*database);
    QVERIFY(checkCost(home().databasePath()).isEmpty());
    const Findings all = checkCost(home().databasePath(), {0, 10000});
    QCOMPARE(all.size(), 1);
    QCOMPARE(all.first().id, QString("slow-statement"));
    QCOMPARE(all.first().count, qint64(4));
    QVERIFY2(all.first().examples.at(1).contains("[") && all.first().examples.at(1).contains("laps_by_car"),
             qPrintable(all.first().examples.at(1)));

    // One that never ends.
    database->exec("ALTER TABLE cars RENAME TO other");
    database->exec(
        "CREATE VIEW cars AS SELECT id, num, name FROM other WHERE (WITH RECURSIVE n(i) AS (SELECT 1 "
        "UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n) > 0");
    const Findings stopped = checkCost(home().databasePath(), {50, 50});
    QCOMPARE(stopped.size(), 1);
    QVERIFY(stopped.first().examples.first().startsWith('>'));
    QVERIFY2(stopped.first().examples.first().contains(" s: SELECT id,num,name FROM cars ["),
             qPrintable(stopped.first().examples.first()));
}

void TestToolDoctor::timesAreToldApart_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("form");
    const auto row = [](const QVariant &value, TimeCheck::Form form) {
        QTest::newRow(qPrintable(value.toString() + ' ' + value.typeName())) << value << int(form);
    };
    row("2020-03-02T10:00:00.000Z", TimeCheck::Normal);
    row(QVariant(), TimeCheck::Empty);
    row("", TimeCheck::Empty);
    row(qlonglong(1583143200), TimeCheck::Number);
    row(1583143200.5, TimeCheck::Number);
    row("1583143200", TimeCheck::Unreadable);
    row("2020-03-02", TimeCheck::Unreadable);
    row("17:30", TimeCheck::Unreadable);
    row("now", TimeCheck::Unreadable);
    row(QByteArray("2020-03-02T10:00:00.000Z"), TimeCheck::Unreadable);
    row("2020-03-02T10:00:00.000+03:00", TimeCheck::Offset);
    row("2020-03-02 10:00-05:00", TimeCheck::Offset);
    row("2020-03-02T10:00:00.000+00:00", TimeCheck::OtherPrecision);
    row("2020-03-02 10:00:00", TimeCheck::Blank);
    row("2020-03-02T10:00:00.000", TimeCheck::Zoneless);
    row("2020-03-02T10:00Z", TimeCheck::OtherPrecision);
    row("٢٠٢٠-03-02T10:00:00.000Z", TimeCheck::NotAscii);
}

void TestToolDoctor::timesAreToldApart()
{
    QFETCH(QVariant, value);
    QFETCH(int, form);
    QCOMPARE(int(TimeCheck::formOf(value)), form);
}

void TestToolDoctor::theOutputFollowsItsSchema()
{
    QCOMPARE(Tool::schemaFaults("doctor", Tool::run({"doctor", "--format", "json"}).output), QString());
    const auto database = createDatabase();
    fill(*database);
    QCOMPARE(Tool::schemaFaults("doctor", Tool::run({"doctor", "--format", "json"}).output), QString());
    database->exec("UPDATE laps SET lap_timestamp = 'x' || char(27) || char(10) || '=1+1'");
    const Tool::Result json = Tool::run({"doctor", "--format", "json"});
    QCOMPARE(Tool::schemaFaults("doctor", json.output), QString());
    QCOMPARE(json.exitCode, 4);
    QVERIFY(!Tool::schemaFaults("doctor", R"({"findings":[{"id":"lap-time-empty"}]})").isEmpty());
    const Tool::Result table = Tool::run({"doctor"});
    QVERIFY(table.output.contains("lap-time-unreadable") && !table.output.contains('\033'));
    QVERIFY(Tool::run({"doctor", "--format", "csv"})
                .output.startsWith("id,severity,count,title,harm,remedy\r\n"));
    QVERIFY(Tool::run({"doctor", "--lang", "ru"}).output.contains("Что делать: "));
}

void TestToolDoctor::everyFindingIsTestedAndDocumented()
{
    QStringList tested = fileIds;
    for (const Case &fault : schemaCases() + timeCases() + rowCases())
        tested.append(fault.id);
    for (const StorageCase &fault : storageCases())
        tested.append(fault.id);
    tested.removeDuplicates();
    QStringList known;
    for (const FindingText &finding : DoctorCatalogue::all())
        known.append(finding.id);
    QStringList documented = known;
    for (const FindingText &finding : Audit::catalogue())
        documented.append(finding.id);
    tested.sort();
    known.sort();
    QCOMPARE(tested, known);

    QFile page(GARAGECTL_PAGE);
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    for (const QString &id : documented)
        QVERIFY2(text.contains("| `" + id + "` |"), qPrintable(id));
}

void TestToolDoctor::titlesFitTheirColumn()
{
    for (const auto *catalogue : {&DoctorCatalogue::all(), &Audit::catalogue()}) {
        for (const FindingText &finding : *catalogue) {
            for (const char *title : finding.title)
                QVERIFY2(TextWidth::width(QString::fromUtf8(title)) <= 44, title);
            for (const auto *text : {&finding.title, &finding.harm, &finding.remedy})
                QVERIFY2(QByteArray((*text)[0]) != QByteArray((*text)[1]), (*text)[0]);
        }
    }
}

Q_DECLARE_METATYPE(Case)

GARAGE_TEST_WITHOUT_WINDOWS(TestToolDoctor)
#include "tst_tooldoctor.moc"
