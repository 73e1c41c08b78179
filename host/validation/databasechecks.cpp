#include "host/validation/checkcontext.h"

#include "host/database/hostconnection.h"
#include "trivexplugininterface.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QPointer>
#include <QWidget>
#include <QtEndian>

// What it does to the file, and what a file in trouble does to it.
namespace {

const QString journal = QStringLiteral("maintainance");
const QString remoteData = QStringLiteral("remote_service_data");
const QString archived = QStringLiteral("remote_service_move_to_archive");
const QString pending = QStringLiteral("update_pending_service");
const char *const oneRecord = R"([{"id": 900, "carId": 1, "opId": 1, "comment": "замена",
    "opDoneDateTime": "2026-02-01T10:00:00.000Z", "operatorName": "Ким", "operatorId": 12}])";

QString tr(const char *text)
{
    return QCoreApplication::translate("DatabaseChecks", text);
}

void begin(CheckStage &stage)
{
    stage.makeDatabase();
    stage.load();
}

void store(CheckStage &stage, const char *records)
{
    stage.send(remoteData, remoteRecords(records));
}

void checkRemoteRecord(CheckStage &stage)
{
    begin(stage);
    store(stage, oneRecord);
    const HostMessage reload = stage.await(pending); // before the archive's message
    expectEqual(tr("the number of services due after the record"),
                reload.data.value(QLatin1String("servicePendingList")).toArray().size(), 1);
    expectMessage(stage.await(archived), QStringLiteral("garage_stats_updater"),
                  jsonObject(R"({"idList": [900]})"));
    expectEqual(tr("the number of records stored as sent"),
                stage.count(journal,
                            QStringLiteral("remote_id=900 AND car_id=1 AND operation_id=1 AND "
                                           "operation_time='2026-02-01T10:00:00.000Z' AND person_id=12 AND "
                                           "person_name='Ким' AND comment='замена' AND operation_state=1")),
                1);
    expectEqual(tr("the number of records"), stage.count(journal), 4);
}

void checkRemoteAgain(CheckStage &stage)
{
    begin(stage);
    for (int time = 0; time < 2; ++time) {
        store(stage, oneRecord);
        stage.await(archived);
    }
    expectEqual(tr("the number of records of one remote id"),
                stage.count(journal, QStringLiteral("remote_id=900")), 1);
}

void checkRemoteCompletion(CheckStage &stage)
{
    begin(stage);
    QJsonObject request = remoteRecords(R"([{"id": 901, "carId": 2, "opId": -1, "localId": 3,
        "opDoneDateTime": "2026-02-01T10:00:00.000Z"}])");
    request.insert(QStringLiteral("msg"), QStringLiteral("service_operation_done"));
    expectEvents(stage.ask(QStringLiteral("remote_control_data"), request), {});
    stage.await(archived);
    expectEqual(tr("the number of records"), stage.count(journal), 3);
    expectEqual(tr("the state of the completed complaint"),
                stage.count(journal, QStringLiteral("id=3 AND operation_state=1")), 1);
}

/// SQLite counts the transactions that changed a file in its header. Read only while nobody holds a lock:
/// closing the file drops the locks of this whole process.
quint32 changeCounter(const CheckStage &stage)
{
    QFile file(stage.home().databasePath());
    constexpr int counterOffset = 24;
    if (!file.open(QIODevice::ReadOnly) || !file.seek(counterOffset))
        throw CheckSkipped {file.errorString()};
    return qFromBigEndian<quint32>(file.read(sizeof(quint32)).constData());
}

void checkTransaction(CheckStage &stage)
{
    begin(stage);
    const quint32 before = changeCounter(stage);
    store(stage, R"([{"id": 901, "carId": 1, "opId": 1, "opDoneDateTime": "2026-02-01T10:00:00.000Z"},
                     {"id": 902, "carId": 2, "opId": 1, "opDoneDateTime": "2026-02-01T11:00:00.000Z"},
                     {"id": 903, "carId": 2, "opId": -1, "opDoneDateTime": "2026-02-01T12:00:00.000Z"}])");
    const HostMessage message = stage.await(archived);
    stage.wait(500);
    expectEqual(tr("the number of transactions for three records"), int(changeCounter(stage) - before), 1);
    expectEqual(tr("the list of archived records"), message.data,
                jsonObject(R"({"idList": [901, 902, 903]})"));
    expectEqual(tr("the number of records"), stage.count(journal), 6);
}

void checkLockedDatabase(CheckStage &stage)
{
    constexpr int patience = 1000; // milliseconds
    begin(stage);
    stage.exec(QStringLiteral("BEGIN IMMEDIATE"));
    QElapsedTimer clock;
    clock.start();
    store(stage, oneRecord);
    stage.send(QStringLiteral("clicked"), {{QStringLiteral("key"), QStringLiteral("show_garage")}});
    expect(clock.elapsed() < patience, tr("the host waits %1 ms for a locked database").arg(clock.elapsed()));
    stage.await(QStringLiteral("insert_tab"));
    stage.expectSilence(patience); // nothing may be announced before it is stored
    stage.exec(QStringLiteral("COMMIT"));
    expectEqual(tr("the list of archived records"), stage.await(archived).data,
                jsonObject(R"({"idList": [900]})"));
    expectEqual(tr("the number of records once the lock was released"), stage.count(journal), 4);
}

void checkMissingDatabase(CheckStage &stage)
{
    stage.load();
    stage.send(QStringLiteral("load_complete"));
    stage.garageWindow().show();
    expectEqual(tr("what it reports without a database"), stage.await(pending).data,
                jsonObject(R"({"servicePendingList": [], "maintainanceStatus": []})"));
    expectEvents(stage.ask(QStringLiteral("send_settings_dialogs")), {QStringLiteral("settings_dialog")});
    stage.send(QStringLiteral("car_complain"), {{QStringLiteral("carId"), 1}});
}

QStringList foreignConnections()
{
    QStringList names;
    for (const QString &name : QSqlDatabase::connectionNames()) {
        if (!name.startsWith(QLatin1String("host-")))
            names.append(name);
    }
    return names;
}

void checkUnloading(CheckStage &stage)
{
    constexpr int longestEnd = 10000; // milliseconds
    begin(stage);
    const QPointer<QObject> root = &stage.plugin();
    const QPointer<QWidget> window = &stage.garageWindow();
    stage.garageWindow().show();
    store(stage, oneRecord);
    QElapsedTimer clock;
    clock.start();
    stage.unload();
    expect(clock.elapsed() < longestEnd, tr("unloading takes %1 ms").arg(clock.elapsed()));
    expect(!root && !window, tr("its objects are left behind"));
    const QStringList connections = foreignConnections();
    expect(connections.isEmpty(),
           tr("its database connections are left behind: %1").arg(connections.join(QLatin1String(", "))));
    expectEqual(tr("the number of remote records handed over before unloading"),
                stage.count(journal, QStringLiteral("remote_id=900")), 1);
    stage.forgetMessages();
    stage.load();
    expectEvents(stage.ask(QStringLiteral("send_settings_dialogs")), {QStringLiteral("settings_dialog")});
}

} // namespace

QVector<Check> databaseChecks()
{
    return {
        {QStringLiteral("remote-record"), tr("a remote record is stored, reported and archived"),
         checkRemoteRecord},
        {QStringLiteral("remote-again"), tr("a remote record that comes twice is stored once"),
         checkRemoteAgain},
        {QStringLiteral("remote-completion"), tr("a remote record closes the complaint that it names"),
         checkRemoteCompletion},
        {QStringLiteral("transaction"), tr("remote records that come together are stored together"),
         checkTransaction},
        {QStringLiteral("locked-database"),
         tr("while the database is locked the host goes on, and nothing is lost"), checkLockedDatabase},
        {QStringLiteral("missing-database"), tr("without a database it answers and reports nothing"),
         checkMissingDatabase},
        {QStringLiteral("unloading"), tr("unloading finishes its work and leaves nothing behind"),
         checkUnloading},
    };
}
