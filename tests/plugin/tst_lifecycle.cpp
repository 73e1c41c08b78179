#include "support/garagetest.h"
#include "support/loadedplugin.h"
#include "support/resources.h"

#include <QSqlDatabase>
#include <QTabWidget>

namespace {

constexpr int defaultCycles = 20;
constexpr int warmUpCycles = 5;

/// GARAGE_LIFE_CYCLES makes it longer than the suite's share.
int cycleCount()
{
    bool isNumber = false;
    const int cycles = qEnvironmentVariableIntValue("GARAGE_LIFE_CYCLES", &isNumber);
    return isNumber ? qMax(cycles, warmUpCycles + 1) : defaultCycles;
}

} // namespace

/// A host that loads, uses and unloads the library again and again loses nothing by it.
class TestLifeCycle : public GarageTest
{
    Q_OBJECT
private slots:
    void nothingGrowsFromCycleToCycle();

private:
    static void fill(const TestDatabase &database);
    /// Everything up to an end in the middle of a reload.
    static void liveOnce();
};

void TestLifeCycle::fill(const TestDatabase &database)
{
    database.exec("BEGIN");
    for (int id = 1; id <= 20; ++id)
        database.addCar(id, QString::number(id), QString("Вихрь %1").arg(id % 4));
    for (int id = 1; id <= 6; ++id) {
        database.addOperation(id, QString("operation %1").arg(id));
        database.addLimit("Вихрь 1", id, 3600, 10, 100);
    }
    for (int i = 0; i < 500; ++i)
        database.addRecord(1 + i % 20, 1 + i % 6, "2026-01-01T10:00:00Z", i % 7 ? 1 : 0);
    for (int i = 0; i < 2000; ++i)
        database.addLap(1 + i % 20, i / 20, "2026-02-01T10:00:00.000Z", 40000);
    database.exec("COMMIT");
}

void TestLifeCycle::liveOnce()
{
    LoadedPlugin host;
    host.send("load_complete");
    host.send("personal_list", {{"personalList", QJsonArray {}}});
    host.showWindow();
    auto *tabs = host.window()->findChild<QTabWidget *>();
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        tabs->grab();
    }
    host.settingsPage()->grab();
    host.send("remote_service_data",
              {{"data",
                "[{\"id\":1,\"carId\":1,\"opId\":1,"
                "\"opDoneDateTime\":\"2026-03-01T10:00:00Z\"}]"}});
    host.awaitReload();
    host.send("run_saved_to_db");
}

void TestLifeCycle::nothingGrowsFromCycleToCycle()
{
    fill(*createDatabase());
    const QStringList connections = QSqlDatabase::connectionNames();
    const int cycles = cycleCount();
    for (int cycle = 0; cycle < warmUpCycles; ++cycle)
        liveOnce();
    const Resources before = Resources::now();
    for (int cycle = warmUpCycles; cycle < cycles; ++cycle) {
        liveOnce();
        QCOMPARE(QSqlDatabase::connectionNames(), connections);
        takeDebugLines();
    }
    const Resources after = Resources::now();

    const int measuredCycles = cycles - warmUpCycles;
    const qint64 grown = after.heapBytes - before.heapBytes;
    qInfo("%d cycles: heap %lld -> %lld bytes (%lld a cycle), resident %lld -> %lld KiB, threads %d -> %d, "
          "handles %d -> %d",
          measuredCycles, before.heapBytes, after.heapBytes, grown / measuredCycles,
          before.residentBytes / 1024, after.residentBytes / 1024, before.threads, after.threads,
          before.handles, after.handles);
    // Qt's own caches settle at some 200 KiB; one window or one table's content a cycle would be more.
    QVERIFY(grown < 128 * 1024 + measuredCycles * 1024);
    QTRY_VERIFY(Resources::now().threads <= before.threads); // an ended one may linger for a moment
    QCOMPARE(after.handles, before.handles);
}

GARAGE_TEST(TestLifeCycle)
#include "tst_lifecycle.moc"
