#include "host/validation/checkcontext.h"

#include "host/database/hostconnection.h"
#include "trivexplugininterface.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QPointer>
#include <QWidget>
#include <QtEndian>

// The plug-in's writes to the database, and its behaviour when the database is locked or missing.
namespace {

const QString serviceLog = QStringLiteral("maintainance");
const QString remoteData = QStringLiteral("remote_service_data");
const QString archived = QStringLiteral("remote_service_move_to_archive");
const QString pending = QStringLiteral("update_pending_service");
const char *const oneRecord = R"([{"id": 900, "carId": 1, "opId": 1, "comment": "замена",
    "opDoneDateTime": "2026-02-01T10:00:00.000Z", "operatorName": "Ким", "operatorId": 12}])";

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseChecks)
};

void begin(CheckContext &context)
{
    context.makeDatabase();
    context.load();
}

void store(CheckContext &context, const char *records)
{
    context.send(remoteData, remoteRecords(records));
}

void checkRemoteRecord(CheckContext &context)
{
    begin(context);
    store(context, oneRecord);
    const HostMessage reload = context.await(pending); // before the archive's message
    expectEqual(Text::tr("the number of services due after the record"),
                reload.data.value(QLatin1String("servicePendingList")).toArray().size(), 1);
    expectMessage(context.await(archived), QStringLiteral("garage_stats_updater"),
                  jsonObject(R"({"idList": [900]})"));
    expectEqual(Text::tr("the number of records stored as sent"),
                context.count(serviceLog,
                              QStringLiteral("remote_id=900 AND car_id=1 AND operation_id=1 AND "
                                             "operation_time='2026-02-01T10:00:00.000Z' AND person_id=12 AND "
                                             "person_name='Ким' AND comment='замена' AND operation_state=1")),
                1);
    expectEqual(Text::tr("the number of records"), context.count(serviceLog), 4);
}

void checkRemoteAgain(CheckContext &context)
{
    begin(context);
    for (int time = 0; time < 2; ++time) {
        store(context, oneRecord);
        context.await(archived);
    }
    expectEqual(Text::tr("the number of records of one remote id"),
                context.count(serviceLog, QStringLiteral("remote_id=900")), 1);
}

void checkRemoteCompletion(CheckContext &context)
{
    begin(context);
    QJsonObject request = remoteRecords(R"([{"id": 901, "carId": 2, "opId": -1, "localId": 3,
        "opDoneDateTime": "2026-02-01T10:00:00.000Z"}])");
    request.insert(QStringLiteral("msg"), QStringLiteral("service_operation_done"));
    expectEvents(context.ask(QStringLiteral("remote_control_data"), request), {});
    context.await(archived);
    expectEqual(Text::tr("the number of records"), context.count(serviceLog), 3);
    expectEqual(Text::tr("the state of the completed complaint"),
                context.count(serviceLog, QStringLiteral("id=3 AND operation_state=1")), 1);
}

/// SQLite counts the transactions that changed a file in its header. Call only while no lock is held:
/// closing the file drops the locks of this whole process.
quint32 changeCounter(const CheckContext &context)
{
    QFile file(context.folder().databasePath());
    constexpr int counterOffset = 24;
    if (!file.open(QIODevice::ReadOnly) || !file.seek(counterOffset))
        throw CheckSkipped {file.errorString()};
    return qFromBigEndian<quint32>(file.read(sizeof(quint32)).constData());
}

void checkTransaction(CheckContext &context)
{
    begin(context);
    const quint32 before = changeCounter(context);
    store(context, R"([{"id": 901, "carId": 1, "opId": 1, "opDoneDateTime": "2026-02-01T10:00:00.000Z"},
                     {"id": 902, "carId": 2, "opId": 1, "opDoneDateTime": "2026-02-01T11:00:00.000Z"},
                     {"id": 903, "carId": 2, "opId": -1, "opDoneDateTime": "2026-02-01T12:00:00.000Z"}])");
    const HostMessage message = context.await(archived);
    context.wait(500);
    expectEqual(Text::tr("the number of transactions for three records"),
                int(changeCounter(context) - before), 1);
    expectEqual(Text::tr("the list of archived records"), message.data,
                jsonObject(R"({"idList": [901, 902, 903]})"));
    expectEqual(Text::tr("the number of records"), context.count(serviceLog), 6);
}

void checkLockedDatabase(CheckContext &context)
{
    constexpr int patience = 1000; // milliseconds
    begin(context);
    context.exec(QStringLiteral("BEGIN IMMEDIATE"));
    QElapsedTimer clock;
    clock.start();
    store(context, oneRecord);
    context.send(QStringLiteral("clicked"), {{QStringLiteral("key"), QStringLiteral("show_garage")}});
    expect(clock.elapsed() < patience,
           Text::tr("the host is blocked for %1 ms by a locked database").arg(clock.elapsed()));
    context.await(QStringLiteral("insert_tab"));
    context.expectSilence(patience); // nothing may be announced before it is stored
    context.exec(QStringLiteral("COMMIT"));
    expectEqual(Text::tr("the list of archived records"), context.await(archived).data,
                jsonObject(R"({"idList": [900]})"));
    expectEqual(Text::tr("the number of records after the lock was released"), context.count(serviceLog), 4);
}

void checkMissingDatabase(CheckContext &context)
{
    context.load();
    context.send(QStringLiteral("load_complete"));
    context.garageWindow().show();
    expectEqual(Text::tr("the report without a database"), context.await(pending).data,
                jsonObject(R"({"servicePendingList": [], "maintainanceStatus": []})"));
    expectEvents(context.ask(QStringLiteral("send_settings_dialogs")), {QStringLiteral("settings_dialog")});
    context.send(QStringLiteral("car_complain"), {{QStringLiteral("carId"), 1}});
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

void checkUnloading(CheckContext &context)
{
    constexpr int longestEnd = 10000; // milliseconds
    begin(context);
    const QPointer<QObject> root = &context.plugin();
    const QPointer<QWidget> window = &context.garageWindow();
    context.garageWindow().show();
    store(context, oneRecord);
    QElapsedTimer clock;
    clock.start();
    context.unload();
    expect(clock.elapsed() < longestEnd, Text::tr("unloading takes %1 ms").arg(clock.elapsed()));
    expect(!root && !window, Text::tr("objects remain"));
    const QStringList connections = foreignConnections();
    expect(connections.isEmpty(),
           Text::tr("database connections remain: %1").arg(connections.join(QLatin1String(", "))));
    expectEqual(Text::tr("the number of remote records sent before unloading"),
                context.count(serviceLog, QStringLiteral("remote_id=900")), 1);
    context.discardMessages();
    context.load();
    expectEvents(context.ask(QStringLiteral("send_settings_dialogs")), {QStringLiteral("settings_dialog")});
}

} // namespace

QVector<Check> databaseChecks()
{
    return {
        {QStringLiteral("remote-record"), Text::tr("a remote record is stored, reported and archived"),
         checkRemoteRecord},
        {QStringLiteral("remote-again"), Text::tr("a remote record received twice is stored once"),
         checkRemoteAgain},
        {QStringLiteral("remote-completion"),
         Text::tr("a remote record closes the complaint with its local id"), checkRemoteCompletion},
        {QStringLiteral("transaction"),
         Text::tr("remote records of one message are stored in one transaction"), checkTransaction},
        {QStringLiteral("locked-database"),
         Text::tr("a locked database neither blocks the host nor loses data"), checkLockedDatabase},
        {QStringLiteral("missing-database"),
         Text::tr("without a database it answers and sends an empty report"), checkMissingDatabase},
        {QStringLiteral("unloading"), Text::tr("unloading completes pending writes and leaves no objects"),
         checkUnloading},
    };
}
