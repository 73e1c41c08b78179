#include "host/validation/checkcontext.h"

#include "trivexplugininterface.h"

#include <QCoreApplication>
#include <QWidget>

// Each request of a host and its answer.
namespace {

const QString garage = QStringLiteral("garage_plugin");
const QString loader = QStringLiteral("garage_stats_updater");
const QString runSaved = QStringLiteral("run_saved_to_db");
const QString pending = QStringLiteral("update_pending_service");
const QString carsList = QStringLiteral("cars_list_changed");
const QString remoteControl = QStringLiteral("remote_control_data");

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(MessageChecks)
};

void begin(CheckContext &context)
{
    context.makeDatabase();
    context.load();
}

qint64 address(const QWidget *widget)
{
    return qint64(reinterpret_cast<quintptr>(widget));
}

void checkLoadComplete(CheckContext &context)
{
    begin(context);
    const QVector<HostMessage> answer = context.ask(QStringLiteral("load_complete"));
    expectEvents(answer, {QStringLiteral("read_cars_list"), QStringLiteral("update_remote_service")});
    for (const HostMessage &message : answer)
        expectMessage(message, garage, {});
}

void checkInsertTab(CheckContext &context)
{
    begin(context);
    const QJsonObject key = jsonObject(R"({"key": "show_garage"})");
    const QVector<HostMessage> answer = context.ask(QStringLiteral("clicked"), key);
    expectEvents(answer, {QStringLiteral("insert_tab")});
    QWidget &window = context.widget(answer.first(), "tabWidget");
    QJsonObject expected =
        jsonObject(R"({"tabCaption": "Гараж", "index": 0, "moduleName": "garage_plugin"})");
    expected.insert(QStringLiteral("tabWidget"), address(&window));
    expectMessage(answer.first(), garage, expected);
    expectEvents(context.ask(QStringLiteral("clicked"), jsonObject(R"({"key": "show_track"})")), {});
}

void checkCloseTab(CheckContext &context)
{
    begin(context);
    QJsonObject expected = jsonObject(R"({"moduleName": "garage_plugin", "onlyHide": true})");
    expected.insert(QStringLiteral("tabWidget"), address(&context.garageWindow()));
    expect(QMetaObject::invokeMethod(&context.plugin(), "closeGarage", Qt::DirectConnection),
           Text::tr("there is no slot closeGarage()"));
    expectMessage(context.await(QStringLiteral("close_tab")), garage, expected);
}

void checkSettingsDialog(CheckContext &context)
{
    begin(context);
    const QVector<HostMessage> answer = context.ask(QStringLiteral("send_settings_dialogs"));
    expectEvents(answer, {QStringLiteral("settings_dialog")});
    QJsonObject expected = jsonObject(R"({"moduleName": "garage_plugin", "settingsCaption": "Гараж"})");
    expected.insert(QStringLiteral("settingsPagePtr"), address(context.plugin().settingsPage()));
    expectMessage(answer.first(), garage, expected);
}

void checkReload(CheckContext &context)
{
    begin(context);
    context.send(runSaved);
    expectMessage(context.await(pending), loader, jsonObject(R"({
        "servicePendingList": [
            {"carId": 1, "carNum": "7", "carModel": "Вихрь", "opId": 1, "opName": "Замена масла",
             "opDateTime": "2026-01-01T10:00", "localId": 1},
            {"carId": 2, "carNum": "8", "carModel": "Вихрь", "opId": -1, "opName": "стук",
             "opDateTime": "2026-01-02T10:00", "localId": 3}],
        "maintainanceStatus": [
            {"carId": 1, "opsStatus": {"1": {"tt": 335, "tl": 11, "tr": 2, "dt": "2026-01-01T10:00"}}},
            {"carId": 2, "opsStatus": {
                "-1": {"tt": 305, "tl": 10, "tr": 2, "dt": "2026-01-02T10:00"},
                "1": {"tt": 305, "tl": 10, "tr": 2, "dt": "2026-01-01T10:00"}}}]})"));
    context.expectSilence();
}

QJsonObject twoCars(bool noStatsUpdate)
{
    QJsonObject data = jsonObject(R"({"cars": [
        {"id": 1, "num": "7", "name": "Вихрь", "available_for_runs": true},
        {"id": 2, "num": "8", "name": "Вихрь", "available_for_runs": false}]})");
    if (noStatsUpdate)
        data.insert(QStringLiteral("noStatsUpdate"), true);
    return data;
}

void checkCarsList(CheckContext &context)
{
    begin(context);
    context.send(carsList, twoCars(false));
    context.expectSilence(); // its window is hidden
    context.garageWindow().show();
    context.await(pending);
    context.send(carsList, twoCars(true));
    context.expectSilence();
    context.send(carsList, twoCars(false));
    context.await(pending);
    context.expectSilence();
}

void checkPersonalList(CheckContext &context)
{
    begin(context);
    expectEvents(context.ask(QStringLiteral("personal_list"), jsonObject(R"({"personalList": [
        {"id": 12, "lastName": "Ким", "firstName": "Анна", "midName": "Львовна", "serviceCode": "4002"}]})")),
                 {});
    context.send(QStringLiteral("remote_service_data"), remoteRecords(R"([
        {"id": 900, "carId": 1, "opId": 1, "opDoneDateTime": "2026-02-01T10:00:00.000Z",
         "serviceCode": "4002", "operatorName": "?"}])"));
    context.await(QStringLiteral("remote_service_move_to_archive"));
    expectEqual(Text::tr("the number of records of the person with the service code"),
                context.count(QStringLiteral("maintainance"),
                              QStringLiteral("person_id=12 AND person_name='Ким Анна Львовна'")),
                1);
}

QVector<HostMessage> toggle(CheckContext &context, const char *more, bool skipAnswer = false)
{
    QJsonObject request = jsonObject(R"({"msg": "switchCarAvailability", "sinkId": 7})");
    request.insert(QStringLiteral("data"), jsonObject(more));
    if (skipAnswer)
        request.insert(QStringLiteral("skipAnswer"), true);
    return context.ask(remoteControl, request);
}

void checkAvailability(CheckContext &context)
{
    begin(context);
    context.send(carsList, twoCars(false));
    const QStringList both {QStringLiteral("update_cars"), QStringLiteral("remote_control_answer")};
    QVector<HostMessage> answer = toggle(context, R"({"carId": 1})");
    expectEvents(answer, both);
    expectMessage(answer.at(0), garage,
                  jsonObject(R"({"carsIdsList": [1], "command": "set_availability", "available": 0})"));
    expectMessage(answer.at(1), garage, jsonObject(R"({"sinkId": -1, "req_answ":
        {"status": "ok", "carId": 1, "carAvailable": false, "sinkId": -1}})"));
    answer = toggle(context, R"({"carId": 2})");
    expectEvents(answer, both);
    expectMessage(answer.at(0), garage,
                  jsonObject(R"({"carsIdsList": [2], "command": "set_availability", "available": 1})"));
    expectEvents(toggle(context, R"({"carId": 1})", true), {both.first()});
    answer = toggle(context, R"({"carId": 99})");
    expectEvents(answer, {both.last()});
    expectMessage(answer.at(0), garage, jsonObject(R"({"sinkId": -1, "req_answ":
        {"status": "ok", "carId": 99, "carAvailable": false, "sinkId": -1}})"));
    for (const char *bad : {"{}", R"({"carId": -1})", R"({"carId": "kart"})"})
        expectEvents(toggle(context, bad), {});
}

void checkSilentEvents(CheckContext &context)
{
    begin(context);
    for (const char *event : {"run_closed", "", "RUN_SAVED_TO_DB", "insert_tab", "no_such_event"})
        expectEvents(context.ask(QString::fromLatin1(event), twoCars(false)), {});
    expectEvents(context.ask(remoteControl, jsonObject(R"({"msg": "no_such_message", "sinkId": 7})")), {});
    context.expectSilence();
}

/// Values of every kind under every key that the events read.
void sendNonsense(CheckContext &context, const QJsonValue &value)
{
    QJsonObject data {{QStringLiteral("noStatsUpdate"), true}};
    for (const char *key : {"key", "cars", "personalList", "msg", "data", "sinkId", "skipAnswer", "carId"})
        data.insert(QLatin1String(key), value);
    QJsonObject deep = data;
    deep.insert(QStringLiteral("cars"), QJsonArray {value, QJsonObject {{QStringLiteral("id"), value}}});
    deep.insert(QStringLiteral("personalList"), QJsonArray {value});
    deep.insert(QStringLiteral("msg"), QStringLiteral("switchCarAvailability"));
    for (const char *event : {"clicked", "cars_list_changed", "personal_list", "remote_control_data",
                              "remote_service_data", "run_closed"}) {
        context.send(QString::fromLatin1(event), data);
        context.send(QString::fromLatin1(event), deep);
    }
}

void checkBadInput(CheckContext &context)
{
    begin(context);
    for (const char *text : {"", "[]", "[{", "{\"id\":1}", "null", "\"text\""})
        expectEvents(context.ask(QStringLiteral("remote_service_data"), remoteRecords(text)), {});
    const QJsonArray values {QJsonValue(),
                             true,
                             -1,
                             1e300,
                             QStringLiteral("%s%n%1"),
                             QString(100000, QLatin1Char('x')),
                             QJsonArray {1, QJsonArray()},
                             QJsonObject {{QStringLiteral("carId"), QJsonObject()}}};
    for (const QJsonValue &value : values)
        sendNonsense(context, value);
    context.send(QStringLiteral("car_complain"));
    context.send(QStringLiteral("car_complain"), jsonObject(R"({"carId": 99})"));
    expectEqual(Text::tr("the number of records after invalid data"),
                context.count(QStringLiteral("maintainance")), 3);
    context.discardMessages();
    expectEvents(context.ask(QStringLiteral("send_settings_dialogs")), {QStringLiteral("settings_dialog")});
    context.send(runSaved);
    context.await(pending);
}

} // namespace

QVector<Check> messageChecks()
{
    return {
        {QStringLiteral("load-complete"), Text::tr("\"load_complete\" requests cars and remote records"),
         checkLoadComplete},
        {QStringLiteral("insert-tab"), Text::tr("\"clicked\" with \"show_garage\" inserts the window"),
         checkInsertTab},
        {QStringLiteral("close-tab"), Text::tr("closing the garage requests to hide the window"),
         checkCloseTab},
        {QStringLiteral("settings-dialog"), Text::tr("the settings page is sent on request"),
         checkSettingsDialog},
        {QStringLiteral("reload"),
         Text::tr("after a saved run the due services and the counters are reported"), checkReload},
        {QStringLiteral("cars-list"), Text::tr("\"cars_list_changed\" reloads a visible window only"),
         checkCarsList},
        {QStringLiteral("personal-list"), Text::tr("people are identified by their service codes"),
         checkPersonalList},
        {QStringLiteral("availability"), Text::tr("remote controls switch a car and get an answer"),
         checkAvailability},
        {QStringLiteral("silent-events"), Text::tr("unknown and empty events are ignored"),
         checkSilentEvents},
        {QStringLiteral("bad-input"), Text::tr("invalid data are ignored"), checkBadInput},
    };
}
