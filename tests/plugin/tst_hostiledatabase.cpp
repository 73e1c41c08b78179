#include "support/garagetest.h"
#include "support/loadedplugin.h"

#include <QComboBox>
#include <QJsonDocument>
#include <QTabWidget>
#include <QTreeView>

#include <algorithm>
#include <cstdio>

namespace {

const QString goodCarsTime = "2026-01-01T00:00:00Z";

QJsonObject remoteRecord(int id, int carId, int opId)
{
    return {{"id", id}, {"carId", carId}, {"opId", opId}, {"opDoneDateTime", "2026-03-08T09:30:00Z"}};
}

QJsonObject batch(const QJsonArray &records)
{
    return {{"data", QString(QJsonDocument(records).toJson())}};
}

QJsonObject lastReload(const QVector<LoadedPlugin::Message> &messages)
{
    for (auto it = messages.crbegin(); it != messages.crend(); ++it) {
        if (it->event == "update_pending_service")
            return it->data;
    }
    return {};
}

/// Whether the due list names that work.
bool isPending(const QJsonObject &reload, int carId, int opId)
{
    const QJsonArray list = reload.value("servicePendingList").toArray();
    return std::any_of(list.cbegin(), list.cend(), [=](const QJsonValue &entry) {
        return entry["carId"].toInt() == carId && entry["opId"].toInt() == opId;
    });
}

/// Looks at every tab, sorted and filtered in every way, and at the settings page.
void lookAtEverything(LoadedPlugin &host)
{
    QWidget *window = host.window();
    auto *tabs = window->findChild<QTabWidget *>();
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        window->grab();
    }
    for (const char *name : {"cbSortKind", "cbFilterModels", "cbFilterServiceState", "cbLogFilterModels",
                             "cbLogFilterOperation"}) {
        auto *combo = window->findChild<QComboBox *>(name);
        for (int index = qMin(combo->count(), 20) - 1; index >= 0; --index) {
            combo->setCurrentIndex(index);
            emit combo->activated(index);
        }
    }
    auto *table = window->findChild<QTreeView *>("tvMaintainanceTable");
    for (int column = 0; column < qMin(table->model()->columnCount(), 12); ++column)
        table->sortByColumn(column, Qt::DescendingOrder);
    window->grab();
    host.settingsPage()->grab();
}

} // namespace

/// Whatever the database contains, and whatever happens to it meanwhile: the library remains usable, and what
/// is right in it keeps its meaning.
class TestHostileDatabase : public GarageTest
{
    Q_OBJECT
private slots:
    void anyContentLeavesTheRestAsItIs_data();
    void anyContentLeavesTheRestAsItIs();
    void tablesMayVanishAndComeBackWhileRunning_data();
    void tablesMayVanishAndComeBackWhileRunning();
    void columnsMayBeRenamedWhileRunning_data();
    void columnsMayBeRenamedWhileRunning();
    void aFileThatReplacesTheDatabaseIsUsed_data();
    void aFileThatReplacesTheDatabaseIsUsed();
    void theLibraryWorksWithoutTheFile();

private:
    /// Cars 1 and 2 of one model; car 1 drove eleven laps since operation 1 was done, and ten are allowed.
    static void addDueCar(const TestDatabase &database);
};

void TestHostileDatabase::addDueCar(const TestDatabase &database)
{
    database.addCar(1, "1", "Вихрь");
    database.addCar(2, "2", "Вихрь");
    database.addOperation(1, "Замена масла");
    database.addLimit("Вихрь", 1, 0, 0, 10);
    database.addRecord(1, 1, goodCarsTime, 1);
    for (int lap = 0; lap < 11; ++lap)
        database.addLap(1, 1, QString("2026-02-01T10:00:%1.000Z").arg(lap, 2, 10, QLatin1Char('0')), 40000);
}

void TestHostileDatabase::anyContentLeavesTheRestAsItIs_data()
{
    QTest::addColumn<QStringList>("statements");
    QTest::newRow("wrong types") << QStringList {
        "INSERT INTO cars VALUES (7, x'00ff00', 12.5)",
        "INSERT INTO service_operations VALUES (7, x'c3284142')",
        "INSERT INTO service_reglament VALUES (12.5, 'seven', 'much', x'01', '1e400')",
        "INSERT INTO maintainance (car_id,operation_id,operation_time,person_id,person_name,"
        "comment,operation_state,remote_id) VALUES "
        "('car','op',12345,'who',x'00',3.7,'done','r'),(7,7,x'ffff',1,2,3,x'01',1e300),"
        "(7.9,7.9,20260101.5,1.5,1.5,1.5,1.5,1.5)",
        "INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) VALUES "
        "(7,'run',20260101,'long'),('x',x'00',x'00',x'00'),(7,1,'2027-01-01',1e18)"};
    QTest::newRow("nulls") << QStringList {
        "INSERT INTO cars (id) VALUES (7)",
        "INSERT INTO service_operations (id) VALUES (7)",
        "INSERT INTO service_reglament (model) VALUES (NULL), (NULL)",
        "INSERT INTO maintainance (operation_state) VALUES (NULL), (NULL)",
        "INSERT INTO maintainance (car_id,operation_id) VALUES (7,NULL),(NULL,7),(7,7)",
        "INSERT INTO personal (id) VALUES (7)",
        "INSERT INTO laps (lap_id) VALUES (NULL), (NULL)"};
    QTest::newRow("everything twice")
        << QStringList {"CREATE TABLE twice AS SELECT * FROM cars UNION ALL SELECT * FROM cars",
                        "DROP TABLE cars",
                        "ALTER TABLE twice RENAME TO cars",
                        "CREATE TABLE twice AS SELECT * FROM service_operations UNION ALL "
                        "SELECT * FROM service_operations",
                        "DROP TABLE service_operations",
                        "ALTER TABLE twice RENAME TO service_operations",
                        "CREATE TABLE twice AS SELECT * FROM service_reglament UNION ALL "
                        "SELECT * FROM service_reglament",
                        "DROP TABLE service_reglament",
                        "ALTER TABLE twice RENAME TO service_reglament",
                        "INSERT INTO maintainance (car_id,operation_id,operation_time) "
                        "SELECT car_id,operation_id,operation_time FROM maintainance"};
    QTest::newRow("times that are none") << QStringList {
        "INSERT INTO maintainance (car_id,operation_id,operation_time) VALUES "
        "(2,1,''),(2,2,'yesterday'),(2,3,'2026-13-45T99:99:99Z'),(2,4,'2026-02-30T00:00:00Z'),"
        "(2,5,'0000-00-00T00:00:00Z'),(2,6,'9999-12-31T23:59:59Z'),(2,7,'-2026-01-01'),"
        "(2,8,'2026-01-01T00:00:00+99:99'),(2,9,'2026-01-01T00:00'||char(0)||'Z'),(2,10,' ')",
        "INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) VALUES (2,1,'later',1)"};
    QTest::newRow("ids of 64 bits") << QStringList {
        "INSERT INTO cars VALUES (9223372036854775807,'1','Вихрь'),"
        "(-9223372036854775808,'2','Вихрь'),(4294967298,'3','Вихрь')",
        "INSERT INTO service_operations VALUES (9223372036854775806,'big'),"
        "(-9223372036854775808,'small'),(4294967299,'overflowing')",
        "INSERT INTO service_reglament VALUES ('Вихрь',9223372036854775806,"
        "9223372036854775807,9223372036854775807,-9223372036854775808)",
        "INSERT INTO maintainance (id,car_id,operation_id,operation_time,remote_id) VALUES "
        "(9223372036854775806,9223372036854775807,9223372036854775806,'2026-01-01T00:00:00Z',"
        "9223372036854775807)",
        "INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) VALUES "
        "(9223372036854775807,9223372036854775807,'2026-02-01',9223372036854775807)"};
    QTest::newRow("thousands of operations")
        << QStringList {"WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i+1 FROM n WHERE i<3099) "
                        "INSERT INTO service_operations SELECT i, 'operation '||i FROM n",
                        "INSERT INTO service_reglament SELECT 'Вихрь',id,0,0,10 FROM service_operations "
                        "WHERE id>=100",
                        "INSERT INTO maintainance (car_id,operation_id,operation_time) "
                        "SELECT 2,id,'2026-01-01T00:00:00Z' FROM service_operations WHERE id>=100"};
    QTest::newRow("texts of all kinds")
        << QStringList {"INSERT INTO cars VALUES (7,'%1%s%n\n\t',replace(hex(zeroblob(10000)),'00','ы')),"
                        "(8,'👩‍🔧','a'||char(0)||'b'),(9,'','')",
                        "INSERT INTO service_operations VALUES (7,'<b>&amp;'), "
                        "(8,char(8238)||'gnitirw'),(9,''),(10,replace(hex(zeroblob(10000)),'00','long'))",
                        "INSERT INTO maintainance (car_id,operation_id,operation_time,person_name,comment) "
                        "SELECT 7,id,'2026-01-01T00:00:00Z','O''Neil\n\"',"
                        "replace(hex(zeroblob(5000)),'00','x\n') FROM service_operations"};
}

void TestHostileDatabase::anyContentLeavesTheRestAsItIs()
{
    QFETCH(QStringList, statements);
    const auto database = createDatabase();
    addDueCar(*database);
    for (const QString &statement : statements)
        database->exec(statement);

    LoadedPlugin host;
    host.showWindow();
    lookAtEverything(host);
    host.send("run_saved_to_db");
    const QJsonObject reload = lastReload(host.awaitReload());
    QVERIFY(isPending(reload, 1, 1));
    QVERIFY(!isPending(reload, 2, 1));

    host.send("remote_service_data", batch({remoteRecord(500, 1, 1)}));
    QVERIFY(!isPending(lastReload(host.awaitReload()), 1, 1));
    QCOMPARE(database->value("SELECT count(*) FROM maintainance WHERE remote_id=500").toInt(), 1);
    lookAtEverything(host);
}

void TestHostileDatabase::tablesMayVanishAndComeBackWhileRunning_data()
{
    QTest::addColumn<QString>("table");
    for (const char *table :
         {"cars", "personal", "laps", "service_operations", "service_reglament", "maintainance"})
        QTest::newRow(table) << table;
}

void TestHostileDatabase::tablesMayVanishAndComeBackWhileRunning()
{
    QFETCH(QString, table);
    const auto database = createDatabase();
    addDueCar(*database);
    LoadedPlugin host;
    host.showWindow();

    database->exec(QString("ALTER TABLE %1 RENAME TO gone").arg(table));
    host.send("run_saved_to_db");
    host.awaitReload();
    host.send("remote_service_data", batch({remoteRecord(500, 2, 1)}));
    host.awaitReload();
    lookAtEverything(host);

    database->exec(QString("ALTER TABLE gone RENAME TO %1").arg(table));
    host.send("run_saved_to_db");
    QVERIFY(isPending(lastReload(host.awaitReload()), 1, 1));
    lookAtEverything(host);
}

void TestHostileDatabase::columnsMayBeRenamedWhileRunning_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("column");
    QTest::newRow("number of a car") << "cars"
                                     << "num";
    QTest::newRow("time of a record") << "maintainance"
                                      << "operation_time";
    QTest::newRow("remote id of a record") << "maintainance"
                                           << "remote_id";
    QTest::newRow("limit of laps") << "service_reglament"
                                   << "laps_limit";
    QTest::newRow("name of an operation") << "service_operations"
                                          << "operation_name";
    QTest::newRow("run of a lap") << "laps"
                                  << "run_id";
}

void TestHostileDatabase::columnsMayBeRenamedWhileRunning()
{
    QFETCH(QString, table);
    QFETCH(QString, column);
    const auto database = createDatabase();
    addDueCar(*database);
    LoadedPlugin host;
    host.showWindow();

    database->exec(QString("ALTER TABLE %1 RENAME COLUMN %2 TO other").arg(table, column));
    host.send("remote_service_data", batch({remoteRecord(500, 2, 1)}));
    host.awaitReload();
    lookAtEverything(host);

    database->exec(QString("ALTER TABLE %1 RENAME COLUMN other TO %2").arg(table, column));
    host.send("run_saved_to_db");
    QVERIFY(isPending(lastReload(host.awaitReload()), 1, 1));
    lookAtEverything(host);
}

void TestHostileDatabase::aFileThatReplacesTheDatabaseIsUsed_data()
{
    QTest::addColumn<bool>("removeFirst");
    QTest::newRow("moved over it") << false;
    QTest::newRow("made after it was deleted") << true;
}

void TestHostileDatabase::aFileThatReplacesTheDatabaseIsUsed()
{
    QFETCH(bool, removeFirst);
    createDatabase();
    LoadedPlugin host;
    host.showWindow();
    host.settingsPage();

    const QString path = home().databasePath();
    const QString restored = path + ".restored";
    addDueCar(TestDatabase(restored));
    if (removeFirst) {
        QVERIFY(QFile::remove(path));
        host.send("run_saved_to_db");
        host.awaitReload();
    }
    QCOMPARE(std::rename(qPrintable(restored), qPrintable(path)), 0);

    host.send("run_saved_to_db");
    QVERIFY(isPending(lastReload(host.awaitReload()), 1, 1));
    host.send("remote_service_data", batch({remoteRecord(500, 1, 1)}));
    QVERIFY(!isPending(lastReload(host.awaitReload()), 1, 1));
    QCOMPARE(TestDatabase(path, false).value("SELECT count(*) FROM maintainance WHERE remote_id=500").toInt(),
             1);
    lookAtEverything(host);
}

void TestHostileDatabase::theLibraryWorksWithoutTheFile()
{
    addDueCar(*createDatabase());
    LoadedPlugin host;
    host.showWindow();
    QVERIFY(QFile::remove(home().databasePath()));

    host.send("remote_service_data", batch({remoteRecord(500, 2, 1)}));
    host.awaitReload();
    lookAtEverything(host);
}

GARAGE_TEST(TestHostileDatabase)
#include "tst_hostiledatabase.moc"
