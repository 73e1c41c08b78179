#include "data/scheduletables.h"
#include "data/servicerecordstore.h"
#include "support/databaselock.h"
#include "support/faultyfiles.h"
#include "support/garagetest.h"

#include <QThread>

#include <functional>
#include <thread>

namespace {

/// One write of the module, as its windows and its loader request it.
struct Write
{
    const char *name;
    std::function<void(GarageDatabase &)> run;
};

ServiceRecord record(const QString &comment)
{
    ServiceRecord record;
    record.carId = 1;
    record.opId = 1;
    record.opTime = QDateTime(QDate(2026, 3, 8), QTime(9, 30), Qt::UTC);
    record.personName = "Иванов";
    record.comment = comment;
    return record;
}

QVector<RemoteServiceRecord> remoteRecords()
{
    QVector<RemoteServiceRecord> records(4);
    for (int i = 0; i < records.size(); ++i) {
        records[i].remoteId = 100 + i; // 100 is there already, and 101 names a local record
        records[i].localId = i == 1 ? 2 : noId;
        records[i].carId = 1;
        records[i].comment = QString("remote %1").arg(i);
    }
    return records;
}

const QVector<Write> writes {
    {"a service that was done",
     [](GarageDatabase &db) { ServiceRecordStore::addServiceDone(db, record("done")); }},
    {"a service with a long comment",
     [](GarageDatabase &db) { ServiceRecordStore::addServiceDone(db, record(QString(40000, 'x'))); }},
    {"a new complaint", [](GarageDatabase &db) { ServiceRecordStore::addComplaint(db, record("knocks")); }},
    {"an amended complaint",
     [](GarageDatabase &db) { ServiceRecordStore::amendComplaint(db, 2, record("louder")); }},
    {"a deletion", [](GarageDatabase &db) { ServiceRecordStore::remove(db, 3); }},
    {"a remote batch", [](GarageDatabase &db) { ServiceRecordStore::storeRemote(db, remoteRecords()); }},
    {"a new operation", [](GarageDatabase &db) { Q_UNUSED(ScheduleTables::addOperation(db, "Шины")) }},
    {"a renamed operation", [](GarageDatabase &db) { ScheduleTables::renameOperation(db, 1, "Цепь"); }},
    {"a removed operation", [](GarageDatabase &db) { ScheduleTables::removeOperation(db, 1); }},
    {"a limit", [](GarageDatabase &db) {
         ScheduleTables::storeLimit(db, {"Вихрь", 1, 3600, 20, 200});
     }}};

const char *const operationNames[] = {
    "write", "sync", "lock", "busy lock", "truncation", "deletion", "opening of the journal"};

QStringList contentOf(const TestDatabase &database)
{
    QStringList content;
    for (const char *table : {"maintainance", "service_operations", "service_reglament"}) {
        content.append(table);
        content += database.rows(QString("SELECT * FROM %1 ORDER BY 1,2").arg(table));
    }
    return content;
}

} // namespace

/// Each write of the module with a fault at each of its steps: afterwards all of it is in the file or
/// nothing, the file is sound, and the same connection still works.
class TestFaultAtAnyStep : public GarageTest
{
    Q_OBJECT
private slots:
    void initTestCase() { FaultyFiles::install(); }
    void cleanupTestCase() { qInfo("%d faults of file operations", m_faults); }
    void init();
    void cleanup();

    void anOperationOnTheFilesFails_data();
    void anOperationOnTheFilesFails();
    void aStatementOfABatchFails_data();
    void aStatementOfABatchFails();
    void theOnlyStatementFails_data();
    void theOnlyStatementFails();
    void theCommitFails_data();
    void theCommitFails();
    void theDiskIsFull_data();
    void theDiskIsFull();
    void anotherConnectionHoldsTheFile_data();
    void anotherConnectionHoldsTheFile();

private:
    static void addWriteRows();
    void restoreFile() const;
    QStringList content() const { return contentOf(TestDatabase(home().databasePath(), false)); }
    TestHome &home() const { return const_cast<TestFaultAtAnyStep *>(this)->GarageTest::home(); }
    QString backupPath() const { return home().databasePath() + ".backup"; }
    QStringList contentAfter(const Write &write) const;
    void checkSoundAndWorking(GarageDatabase &database) const;
    void tryFault(const Write &write, FaultyFiles::Operation operation, int k, FaultyFiles::Duration duration,
                  const QStringList &after);

    QStringList m_before;
    int m_faults = 0;
};

void TestFaultAtAnyStep::init()
{
    GarageTest::init();
    FaultyFiles::clear();
    {
        const auto database = createDatabase();
        database->addCar(1, "1", "Вихрь");
        database->addOperation(1, "Замена масла");
        database->addLimit("Вихрь", 1, 0, 0, 10);
        database->addRecord(1, 1, "2026-01-01T10:00:00Z", DoneState);
        database->addRecord(1, -1, "2026-01-02T10:00:00Z", OpenState);
        database->addRecord(1, 1, "2026-01-03T10:00:00Z", DoneState);
        database->exec("UPDATE maintainance SET remote_id=100 WHERE id=1");
    }
    m_before = content();
    QVERIFY(QFile::copy(home().databasePath(), backupPath()));
}

void TestFaultAtAnyStep::cleanup()
{
    FaultyFiles::clear();
    GarageTest::cleanup();
}

void TestFaultAtAnyStep::restoreFile() const
{
    QFile::remove(home().databasePath() + "-journal");
    QFile::remove(home().databasePath());
    QVERIFY(QFile::copy(backupPath(), home().databasePath()));
}

QStringList TestFaultAtAnyStep::contentAfter(const Write &write) const
{
    {
        GarageDatabase database("module");
        write.run(database);
    }
    const QStringList after = content();
    restoreFile();
    return after;
}

void TestFaultAtAnyStep::checkSoundAndWorking(GarageDatabase &database) const
{
    const QString marker = "works on";
    const TestDatabase check(home().databasePath(), false);
    QCOMPARE(check.rows("PRAGMA integrity_check"), QStringList("ok"));
    ServiceRecordStore::addComplaint(database, record(marker));
    QCOMPARE(check.value("SELECT count(*) FROM maintainance WHERE comment=?", {marker}).toInt(), 1);
}

void TestFaultAtAnyStep::addWriteRows()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < writes.size(); ++i)
        QTest::newRow(writes.at(i).name) << i;
}

void TestFaultAtAnyStep::anOperationOnTheFilesFails_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("operation");
    for (int i = 0; i < writes.size(); ++i) {
        for (int operation = 0; operation < FaultyFiles::OperationCount; ++operation)
            QTest::addRow("%s, %s", writes.at(i).name, operationNames[operation]) << i << operation;
    }
}

void TestFaultAtAnyStep::anOperationOnTheFilesFails()
{
    QFETCH(int, index);
    QFETCH(int, operation);
    const Write &write = writes.at(index);
    const QStringList after = contentAfter(write);
    QVERIFY(after != m_before);

    const auto kind = static_cast<FaultyFiles::Operation>(operation);
    int k = 1;
    do {
        for (const auto duration : {FaultyFiles::Once, FaultyFiles::UntilCleared}) {
            tryFault(write, kind, k, duration, after);
            if (QTest::currentTestFailed())
                QFAIL(qPrintable(QString("k = %1, %2")
                                     .arg(k)
                                     .arg(duration == FaultyFiles::Once ? "once" : "until cleared")));
        }
    } while (k++ < 1000 && FaultyFiles::hasStruck());
    QVERIFY(k < 1000);
}

void TestFaultAtAnyStep::tryFault(const Write &write, FaultyFiles::Operation operation, int k,
                                  FaultyFiles::Duration duration, const QStringList &after)
{
    restoreFile();
    GarageDatabase database("module");
    FaultyFiles::fail(operation, k, duration);
    // A write waits as long as the file is busy, so another thread ends this.
    std::thread rescuer;
    if (operation == FaultyFiles::BusyLock && duration == FaultyFiles::UntilCleared) {
        rescuer = std::thread([] {
            QThread::msleep(20);
            FaultyFiles::clear();
        });
    }
    write.run(database);
    if (rescuer.joinable())
        rescuer.join();
    FaultyFiles::clear();

    m_faults += FaultyFiles::hasStruck();
    const QStringList now = content();
    if (operation == FaultyFiles::BusyLock || !FaultyFiles::hasStruck())
        QCOMPARE(now, after);
    else
        QVERIFY2(now == m_before || now == after, qPrintable(now.join('\n')));
    checkSoundAndWorking(database);
}

void TestFaultAtAnyStep::aStatementOfABatchFails_data()
{
    QTest::addColumn<QString>("raise");
    QTest::addColumn<QString>("event");
    QTest::addColumn<int>("failing");
    QTest::addColumn<bool>("othersAreStored");
    for (int failing = 0; failing < remoteRecords().size(); ++failing) {
        const QString event = failing < 2 ? "UPDATE" : "INSERT";
        QTest::addRow("abort at %d", failing) << "ABORT" << event << failing << true;
        QTest::addRow("fail at %d", failing) << "FAIL" << event << failing << true;
        QTest::addRow("rollback at %d", failing) << "ROLLBACK" << event << failing << false;
    }
}

void TestFaultAtAnyStep::aStatementOfABatchFails()
{
    QFETCH(QString, raise);
    QFETCH(QString, event);
    QFETCH(int, failing);
    QFETCH(bool, othersAreStored);
    const TestDatabase check(home().databasePath(), false);
    check.exec(QString("CREATE TRIGGER fault BEFORE %1 ON maintainance WHEN new.comment='remote %2' "
                       "BEGIN SELECT RAISE(%3, 'injected'); END")
                   .arg(event)
                   .arg(failing)
                   .arg(raise));

    GarageDatabase database("module");
    ServiceRecordStore::storeRemote(database, remoteRecords());
    QStringList stored;
    for (int i = 0; i < remoteRecords().size() && othersAreStored; ++i) {
        if (i != failing)
            stored.append(QString("remote %1").arg(i));
    }
    QCOMPARE(check.rows("SELECT comment FROM maintainance WHERE comment LIKE 'remote %' "
                        "ORDER BY comment"),
             stored);
    checkSoundAndWorking(database);
}

void TestFaultAtAnyStep::theOnlyStatementFails_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("raise");
    for (int i = 0; i < writes.size(); ++i) {
        for (const char *raise : {"ABORT", "FAIL", "ROLLBACK"})
            QTest::addRow("%s, %s", writes.at(i).name, raise) << i << raise;
    }
}

void TestFaultAtAnyStep::theOnlyStatementFails()
{
    QFETCH(int, index);
    QFETCH(QString, raise);
    const TestDatabase check(home().databasePath(), false);
    QStringList triggers;
    for (const char *table : {"maintainance", "service_operations", "service_reglament"}) {
        for (const char *event : {"INSERT", "UPDATE", "DELETE"}) {
            const QString name = QString("%1_%2").arg(table, event);
            check.exec(QString("CREATE TRIGGER %1 BEFORE %2 ON %3 BEGIN SELECT RAISE(%4, 'injected'); END")
                           .arg(name, event, table, raise));
            triggers.append(name);
        }
    }
    GarageDatabase database("module");
    writes.at(index).run(database);
    QCOMPARE(contentOf(check), m_before);
    for (const QString &trigger : qAsConst(triggers))
        check.exec("DROP TRIGGER " + trigger);
    checkSoundAndWorking(database);
}

void TestFaultAtAnyStep::theCommitFails_data()
{
    addWriteRows();
}

void TestFaultAtAnyStep::theCommitFails()
{
    QFETCH(int, index);
    // Each change leaves a reference to a row that is not there: only the COMMIT finds that out.
    const TestDatabase check(home().databasePath(), false);
    check.exec("CREATE TABLE parent (id INTEGER PRIMARY KEY)");
    check.exec("CREATE TABLE child (parent INTEGER REFERENCES parent(id) DEFERRABLE INITIALLY DEFERRED)");
    for (const char *table : {"maintainance", "service_operations", "service_reglament"}) {
        for (const char *event : {"INSERT", "UPDATE", "DELETE"}) {
            check.exec(QString("CREATE TRIGGER %1_%2 BEFORE %2 ON %1 BEGIN INSERT INTO child VALUES (7); END")
                           .arg(table, event));
        }
    }
    GarageDatabase database("module");
    database.run("PRAGMA foreign_keys=ON");
    writes.at(index).run(database);
    QCOMPARE(contentOf(check), m_before);

    check.exec("INSERT INTO parent VALUES (7)");
    checkSoundAndWorking(database);
}

void TestFaultAtAnyStep::theDiskIsFull_data()
{
    addWriteRows();
}

void TestFaultAtAnyStep::theDiskIsFull()
{
    QFETCH(int, index);
    const QStringList after = contentAfter(writes.at(index));
    GarageDatabase database("module");
    database.run("PRAGMA max_page_count=1"); // no less than the file has
    writes.at(index).run(database);
    const QStringList now = content();
    QVERIFY2(now == m_before || now == after, qPrintable(now.join('\n')));
    QCOMPARE(now == m_before, QString(writes.at(index).name) == "a service with a long comment");

    database.run("PRAGMA max_page_count=1000000");
    checkSoundAndWorking(database);
}

void TestFaultAtAnyStep::anotherConnectionHoldsTheFile_data()
{
    addWriteRows();
}

void TestFaultAtAnyStep::anotherConnectionHoldsTheFile()
{
    QFETCH(int, index);
    const QStringList after = contentAfter(writes.at(index));
    for (const auto kind : {DatabaseLock::Shared, DatabaseLock::Immediate, DatabaseLock::Exclusive}) {
        restoreFile();
        GarageDatabase database("module");
        {
            const DatabaseLock lock(home().databasePath(), kind, 60);
            writes.at(index).run(database);
            QVERIFY(!lock.isHeld());
        }
        QCOMPARE(content(), after);
        checkSoundAndWorking(database);
    }
}

GARAGE_TEST(TestFaultAtAnyStep)
#include "tst_faultatanystep.moc"
