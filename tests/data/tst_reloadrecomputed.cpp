#include "support/garagetest.h"
#include "support/loaderprobe.h"
#include "support/randomdata.h"
#include "support/recomputation.h"

/// The loader's answer against a recomputation that shares neither its SQL nor its code.
class TestReloadRecomputed : public GarageTest
{
    Q_OBJECT
private slots:
    void everyReloadEqualsTheRecomputation();
};

void TestReloadRecomputed::everyReloadEqualsTheRecomputation()
{
    const auto database = createDatabase();
    LoaderProbe probe;
    int pendingTotal = 0;
    for (quint32 seed = 1; seed <= 300; ++seed) {
        database->exec("BEGIN");
        for (const char *table : {"cars", "maintainance", "laps", "service_operations", "service_reglament"})
            database->exec(QString("DELETE FROM ") + table);
        RandomData(seed).fill(*database);
        database->exec("COMMIT");

        probe.reload();
        const Recomputed::Recomputation expected(*database);
        const QJsonObject message = probe.last("update_pending_service");
        expected.compare(message);
        if (QTest::currentTestFailed()) {
            qInfo("seed %u", seed);
            return;
        }
        QCOMPARE(probe.cars.size(), expected.carCount());
        QCOMPARE(probe.log.size(), expected.records().size());
        pendingTotal += int(message.value("servicePendingList").toArray().size());
    }
    QVERIFY2(pendingTotal > 400, qPrintable(QString::number(pendingTotal)));
}

GARAGE_TEST_WITHOUT_WINDOWS(TestReloadRecomputed)
#include "tst_reloadrecomputed.moc"
