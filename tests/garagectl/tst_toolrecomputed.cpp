#include "support/garagetest.h"
#include "support/loaderprobe.h"
#include "support/randomdata.h"
#include "support/recomputation.h"
#include "tool.h"

/// The real program against the loader and against a recomputation that shares no code with either.
class TestToolRecomputed : public GarageTest
{
    Q_OBJECT
private slots:
    void pendingRowsAreTheLoadersListAndCountersAreRight();
};

namespace {

/// The rows that are pending, as the loader's message has them.
QJsonArray pendingOf(const QJsonArray &rows)
{
    QJsonArray pending;
    for (const QJsonValue &value : rows) {
        const QJsonObject row = value.toObject();
        if (!row.value("pending").toBool())
            continue;
        // "2026-03-01T10:00:00Z" here, minutes without a zone there
        pending.append(QJsonObject {{"carId", row.value("carId")},
                                    {"carNum", row.value("carNumber")},
                                    {"carModel", row.value("carModel")},
                                    {"opId", row.value("operationId")},
                                    {"opName", row.value("operation")},
                                    {"opDateTime", row.value("lastDone").toString().left(16)},
                                    {"localId", row.value("localId")}});
    }
    return pending;
}

int countCountersThatDiffer(const QJsonArray &rows, const Recomputed::Recomputation &expected, int &compared)
{
    int different = 0;
    for (const QJsonValue &value : rows) {
        const QJsonObject row = value.toObject();
        const auto statuses = expected.statusesOf(row.value("carId").toInt());
        const auto status = statuses.find(row.value("operationId").toInt());
        const bool isRecorded = !row.value("localId").isNull();
        if (isRecorded != (status != statuses.end())) {
            ++different;
            continue;
        }
        const Recomputed::Status counters = isRecorded ? status->second : Recomputed::Status();
        ++compared;
        if (row.value("seconds").toInt() != counters.seconds || row.value("laps").toInt() != counters.laps
            || row.value("runs").toInt() != counters.runs
            || row.value("lastDone").toString().left(16) != counters.dateTime)
            ++different;
    }
    return different;
}

} // namespace

void TestToolRecomputed::pendingRowsAreTheLoadersListAndCountersAreRight()
{
    const auto database = createDatabase();
    LoaderProbe probe;
    int pendingTotal = 0;
    int compared = 0;
    for (quint32 seed = 1; seed <= 300; ++seed) {
        database->exec("BEGIN");
        for (const char *table : {"cars", "maintainance", "laps", "service_operations", "service_reglament"})
            database->exec("DELETE FROM " + QLatin1String(table));
        RandomData(seed).fill(*database);
        database->exec("COMMIT");

        probe.reload();
        const Tool::Result due = Tool::run({"due", "--format", "json"});
        QVERIFY2(due.exitCode == 0, qPrintable(due.errors));
        const QJsonArray listed = probe.last("update_pending_service").value("servicePendingList").toArray();
        QCOMPARE(pendingOf(due.rows()), listed);
        QCOMPARE(countCountersThatDiffer(due.rows(), Recomputed::Recomputation(*database), compared), 0);
        pendingTotal += int(listed.size());
    }
    QVERIFY2(pendingTotal > 400, qPrintable(QString::number(pendingTotal)));
    QVERIFY2(compared > 2000, qPrintable(QString::number(compared)));
}

GARAGE_TEST_WITHOUT_WINDOWS(TestToolRecomputed)
#include "tst_toolrecomputed.moc"
