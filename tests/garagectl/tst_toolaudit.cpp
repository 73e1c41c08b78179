#include "support/garagetest.h"
#include "support/loaderprobe.h"
#include "tool.h"

#include "garagectl/audit/audit.h"

#include <QFile>
#include <QJsonDocument>

namespace {

const QString day = "2020-03-01T";

/// A line of a log. The seconds are those since ten o'clock.
QString line(int second, const QString &event, const QString &data)
{
    const QTime time = QTime(10, 0).addSecs(second);
    return QString(R"({"time":"%1%2.000Z","direction":"toPlugin","module":"host","event":"%3","data":%4})")
        .arg(day, time.toString("hh:mm:ss"), event, data);
}

/// The remote side sends records.
QString batch(int second, const QString &records)
{
    const QByteArray data = QJsonDocument(QJsonObject {{"data", records}}).toJson(QJsonDocument::Compact);
    return line(second, "remote_service_data", QString::fromUtf8(data));
}

QString record(const QString &id, int carId, int opId, const QString &time, int localId = -1)
{
    return QString(R"({"id":%1,"carId":%2,"opId":%3,"opDoneDateTime":"%4","localId":%5})")
        .arg(id, QString::number(carId), QString::number(opId), time, QString::number(localId));
}

QString archived(int second, const QString &ids)
{
    return line(second, "remote_service_move_to_archive", "{\"idList\":[" + ids + "]}");
}

const QString time1 = "2020-03-01T09:00:00.000Z";
const QString time2 = "2020-03-01T09:30:00.000Z";

/// Statements that store a row.
QString stored(int localId, const QString &remoteId, int carId, int opId, const QString &time, int state = 1)
{
    return QString("INSERT INTO maintainance (id, remote_id, car_id, operation_id, operation_time, "
                   "operation_state) "
                   "VALUES (%1, %2, %3, %4, '%5', %6)")
        .arg(QString::number(localId), remoteId, QString::number(carId), QString::number(opId), time,
             QString::number(state));
}

QString deleted(int second, int remoteId, int localId)
{
    return line(second, "remote_service_delete",
                QString(R"({"remoteId":%1,"localId":%2})").arg(remoteId).arg(localId));
}

/// Keeps what is before it from being the end of the log.
const QString end = line(600, "run_closed", "{}");

QStringList foundIds(const Tool::Result &result)
{
    QStringList ids;
    for (const QJsonValue &finding : result.json().value("findings").toArray())
        ids.append(finding.toObject().value("id").toString());
    return ids;
}

} // namespace

/// The comparison of a message log with a database, by the real program.
class TestToolAudit : public GarageTest
{
    Q_OBJECT
private slots:
    void differencesAreFound_data();
    void differencesAreFound();
    void aLogOfTheModuleItselfHasNoFindings();
    void malformedLinesAreReportedAndPassedOver();
    void aLogThatCannotBeReadIsBadUsage();
    void theOutputFollowsItsSchema();

private:
    QString logPath() { return home().path() + "/messages.jsonl"; }
    void writeLog(const QByteArray &content);
};

void TestToolAudit::writeLog(const QByteArray &content)
{
    QFile file(logPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

void TestToolAudit::differencesAreFound_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QStringList>("ids");
    const QString sent = batch(1, '[' + record("900", 1, 1, time1) + ']');
    const QString answer = archived(2, "900");
    const QString row = stored(5, "900", 1, 1, time1);
    const auto add = [](const char *name, const QStringList &lines, const QStringList &rows,
                        const QString &id) {
        QTest::newRow(name) << lines << rows << (id.isEmpty() ? QStringList() : QStringList(id));
    };
    add("archived and stored", {sent, answer, end}, {row}, "");
    add("archived, not stored", {sent, answer, end}, {}, "archived-not-stored");
    add("archived, deleted afterwards", {sent, answer, deleted(3, 900, 5), end}, {}, "");
    add("archived, deleted before", {deleted(0, 900, 5), sent, answer, end}, {}, "archived-not-stored");
    add("archived, id beyond 32 bits",
        {batch(1, '[' + record("5000000000", 1, 1, time1) + ']'), archived(2, "5000000000"), end},
        {stored(5, "5000000000", 1, 1, time1)}, "");
    add("archived under its local id", {batch(1, '[' + record("900", 1, 1, time1, 5) + ']'), answer, end},
        {stored(5, "NULL", 1, 1, time1)}, "");
    add("by a remote control",
        {line(1, "remote_control_data",
              R"({"msg":"service_operation_done","data":"[{\"id\":900,\"carId\":1,\"opId\":1}]"})"),
         answer, end},
        {}, "archived-not-stored");
    add("archived, the message is not in the log", {answer, end}, {}, "archived-unknown");
    add("archived, the message is not in the log, stored", {answer, end}, {row}, "");
    add("deleted, still stored", {deleted(1, -1, 5), end}, {row}, "deleted-still-stored");
    add("deleted", {deleted(1, -1, 6), end}, {row}, "");
    add("two rows of one id", {end}, {row, stored(6, "900", 1, 1, time1)}, "stored-twice");
    add("under both ids", {batch(1, '[' + record("900", 1, 1, time1, 6) + ']'), answer, end},
        {row, stored(6, "NULL", 1, 1, time1)}, "stored-twice");
    const QString recorded =
        line(1, "add_remote_service", R"({"carId":1,"opId":1,"opTime":"2020-03-01 09:00"})");
    add("returned as another record", {recorded, end}, {row, stored(6, "NULL", 1, 1, time1)}, "stored-twice");
    add("returned as itself", {recorded, end}, {row}, "");
    add("overwritten by another id",
        {batch(1, '[' + record("900", 1, 1, time1, 5) + ']'), answer,
         batch(3, '[' + record("905", 1, 2, time2, 5) + ']'), archived(4, "905"), end},
        {stored(5, "NULL", 1, 2, time2)}, "overwritten");
    add("sent again",
        {sent, answer, batch(3, '[' + record("900", 1, 1, time2) + ']'), archived(4, "900"), end},
        {stored(5, "900", 1, 1, time2)}, "");
    add("overwritten without an id",
        {batch(1, '[' + record("-1", 1, 1, time1) + ',' + record("-1", 1, 2, time2) + ']'),
         archived(2, "-1,-1"), end},
        {stored(5, "-1", 1, 2, time2)}, "overwritten");
    add("never archived", {sent, end}, {row}, "batch-unanswered");
    add("the log ends", {sent, line(3, "run_closed", "{}")}, {row}, "");
    add("only one of two was archived", {sent, sent, answer, end}, {row}, "batch-unanswered");
    const QString completed =
        line(1, "add_remote_service", R"({"carId":1,"opId":1,"localId":5,"updateFromLocal":true})");
    add("completed, never returned", {completed, end}, {stored(5, "NULL", 1, 1, time1, 0)},
        "completion-unanswered");
    add("completed and returned",
        {completed, batch(2, '[' + record("900", 1, 1, time1, 5) + ']'), archived(3, "900"), end},
        {stored(5, "NULL", 1, 1, time1)}, "");
    add("request without an answer", {line(1, "load_complete", "{}"), end}, {}, "request-unanswered");
    add("request with an answer",
        {line(1, "load_complete", "{}"), line(1, "read_cars_list", "{}"),
         line(2, "cars_list_changed", R"({"cars":[]})"), end},
        {}, "");
    add("no message", {""}, {}, "no-messages");
    add("a line that is none", {"{", end}, {}, "malformed-line");
}

void TestToolAudit::differencesAreFound()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, rows);
    QFETCH(QStringList, ids);
    const auto database = createDatabase();
    for (const QString &row : rows)
        database->exec(row);
    writeLog(lines.join('\n').toUtf8());
    const QStringList before = Tool::folderState(home().databasePath());
    const Tool::Result result = Tool::run({"audit", logPath(), "--format", "json"});
    QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors));
    QCOMPARE(foundIds(result), ids);
    const bool isError = result.output.contains("\"severity\": \"error\"");
    QCOMPARE(result.exitCode, isError ? 4 : 0);
    QCOMPARE(Tool::folderState(home().databasePath()), before);
}

/// What the loader stores and announces.
void TestToolAudit::aLogOfTheModuleItselfHasNoFindings()
{
    const auto database = createDatabase();
    database->addCar(1, "7", "Sodi");
    database->addOperation(1, "Chain");
    const int open = database->addRecord(1, -1, time1, 0, "noise");
    LoaderProbe probe;
    const QString records = '[' + record("900", 1, 1, time1) + ',' + record("901", 1, -1, time2, open) + ']';
    probe.updateService(QJsonDocument::fromJson(records.toUtf8()).array());
    probe.deleteOperation(open, -1);
    QVERIFY(probe.waitForReloads(2));

    QStringList lines {batch(1, records)};
    for (const LoaderProbe::Message &message : probe.messages) {
        const QByteArray data = QJsonDocument(message.data).toJson(QJsonDocument::Compact);
        lines.append(line(2, message.event, QString::fromUtf8(data)));
    }
    writeLog((lines + QStringList {end}).join('\n').toUtf8());
    const Tool::Result result = Tool::run({"audit", logPath()});
    QVERIFY2(result.output.startsWith("Nothing is wrong.\n"), result.output.constData());
    database->exec("DELETE FROM maintainance");
    QCOMPARE(foundIds(Tool::run({"audit", logPath(), "--format", "json"})),
             QStringList("archived-not-stored"));
}

void TestToolAudit::malformedLinesAreReportedAndPassedOver()
{
    const auto database = createDatabase();
    const QStringList lines {"{\"event\":",
                             "[1]",
                             "null",
                             "{\"event\":5,\"data\":[]}",
                             QString(100000, '['),
                             "\xff\xfe",
                             "",
                             line(1, "remote_service_data", R"({"data":5})"),
                             line(1, "remote_service_data", R"({"data":"[5,{}, null"})"),
                             line(1, "remote_service_move_to_archive", R"({"idList":{}})"),
                             line(1, "remote_service_delete", R"({"localId":"x"})"),
                             deleted(2, 900, 5),
                             end};
    database->exec(stored(5, "900", 1, 1, time1));
    writeLog(lines.join('\n').toUtf8());
    const Tool::Result result = Tool::run({"audit", logPath(), "--format", "json"});
    QCOMPARE(foundIds(result), QStringList({"deleted-still-stored", "malformed-line"}));
    const QJsonObject malformed = result.json().value("findings").toArray().last().toObject();
    QCOMPARE(malformed.value("count"), QJsonValue(6));
    QVERIFY(malformed.value("examples").toArray().first().toString().startsWith("line 1: "));
    QCOMPARE(result.exitCode, 4);
}

void TestToolAudit::aLogThatCannotBeReadIsBadUsage()
{
    createDatabase();
    for (const QString &path : QStringList {home().path() + "/none", home().path()}) {
        const Tool::Result result = Tool::run({"audit", path});
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.errors.contains(path), qPrintable(result.errors));
        QCOMPARE(result.errors.count('\n'), 1);
    }
}

void TestToolAudit::theOutputFollowsItsSchema()
{
    createDatabase();
    writeLog((deleted(2, 900, 5) + '\n' + archived(3, "901") + "\n=1+1\033[2J").toUtf8());
    const Tool::Result result = Tool::run({"audit", logPath(), "--format", "json"});
    QCOMPARE(Tool::schemaFaults("audit", result.output), QString());
    QCOMPARE(result.json().value("messages"), QJsonValue(2));
    QCOMPARE(result.json().value("from"), QJsonValue("2020-03-01T10:00:02Z"));
    QVERIFY(!Tool::schemaFaults("audit", R"({"findings":[]})").isEmpty());
    QVERIFY(!Tool::run({"audit", logPath()}).output.contains('\033'));
    QVERIFY(Tool::run({"audit", logPath(), "--lang", "ru"}).output.contains("Сообщений: 2."));
    writeLog("");
    QCOMPARE(Tool::schemaFaults("audit", Tool::run({"audit", logPath(), "--format", "json"}).output),
             QString());
}

GARAGE_TEST_WITHOUT_WINDOWS(TestToolAudit)
#include "tst_toolaudit.moc"
