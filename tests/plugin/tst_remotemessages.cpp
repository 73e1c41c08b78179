#include "samplemessages.h"
#include "support/garagetest.h"
#include "support/loadedplugin.h"
#include "support/userinput.h"

#include <QPushButton>
#include <QTabWidget>
#include <QTreeView>

using namespace SampleMessages;

/// What remote controls and the web service send through the host, and the answers.
class TestRemoteMessages : public DatabaseTest
{
    Q_OBJECT
private slots:
    void remoteTogglesAreExecutedAndAnswered_data();
    void remoteTogglesAreExecutedAndAnswered();
    void otherRemoteMessagesGetNoAnswer_data();
    void otherRemoteMessagesGetNoAnswer();
    void remoteServiceDataIsSynchronised_data();
    void remoteServiceDataIsSynchronised();
    void unusableServiceDataDoesNothing_data();
    void unusableServiceDataDoesNothing();
    void theWindowsButtonsAnswerRemoteControlsToo();
};

namespace {

QJsonObject availabilityCommand(int carId, int available)
{
    return {{"carsIdsList", QJsonArray {carId}}, {"command", "set_availability"}, {"available", available}};
}

} // namespace

void TestRemoteMessages::remoteTogglesAreExecutedAndAnswered_data()
{
    QTest::addColumn<int>("carId");
    QTest::addColumn<QJsonValue>("skipAnswer");
    QTest::addColumn<int>("command");
    QTest::addColumn<bool>("answered");
    QTest::newRow("out of work") << 1 << QJsonValue() << 0 << true;
    QTest::newRow("into work") << 2 << QJsonValue(false) << 1 << true;
    QTest::newRow("not answered") << 1 << QJsonValue(true) << 0 << false;
    QTest::newRow("a number does not skip") << 1 << QJsonValue(1) << 0 << true;
    QTest::newRow("an unknown car") << 99 << QJsonValue() << -1 << true;
}

void TestRemoteMessages::remoteTogglesAreExecutedAndAnswered()
{
    QFETCH(int, carId);
    QFETCH(QJsonValue, skipAnswer);
    QFETCH(int, command);
    QFETCH(bool, answered);
    LoadedPlugin host;
    host.send("cars_list_changed", carsList());
    QJsonObject request = toggleRequest(carId);
    if (!skipAnswer.isNull())
        request.insert("skipAnswer", skipAnswer);
    auto messages = host.ask("remote_control_data", request);
    if (command >= 0) {
        const auto update = messages.takeFirst();
        QCOMPARE(update.module, "garage_plugin");
        QCOMPARE(update.event, "update_cars");
        QCOMPARE(update.data, availabilityCommand(carId, command));
    }
    QCOMPARE(messages.size(), answered ? 1 : 0);
    if (!answered)
        return;
    QCOMPARE(messages.first().module, "garage_plugin");
    QCOMPARE(messages.first().event, "remote_control_answer");
    // The answer's own sink, not the request's.
    QCOMPARE(messages.first().data,
             QJsonObject(
                 {{"req_answ",
                   QJsonObject {
                       {"status", "ok"}, {"carId", carId}, {"carAvailable", command == 1}, {"sinkId", -1}}},
                  {"sinkId", -1}}));
}

void TestRemoteMessages::otherRemoteMessagesGetNoAnswer_data()
{
    QTest::addColumn<QJsonObject>("request");
    QTest::newRow("no message") << QJsonObject();
    QTest::newRow("an unknown one") << json(R"({"msg": "startRun", "sinkId": 3})");
    QTest::newRow("car -1") << toggleRequest(-1);
    QTest::newRow("no number") << json(R"({"msg": "switchCarAvailability", "data": {"carId": "первый"},
                                           "sinkId": "пульт 7"})");
    QTest::newRow("data is no object")
        << json(R"({"msg": "switchCarAvailability", "data": "1", "sinkId": "пульт 7"})");
    QTest::newRow("service done without records")
        << json(R"({"msg": "service_operation_done", "data": "[]"})");
}

void TestRemoteMessages::otherRemoteMessagesGetNoAnswer()
{
    QFETCH(QJsonObject, request);
    LoadedPlugin host;
    host.send("cars_list_changed", carsList());
    QVERIFY(host.ask("remote_control_data", request).isEmpty());
    QVERIFY(host.noFurtherReload());
    QVERIFY(host.messages.isEmpty());
}

void TestRemoteMessages::remoteServiceDataIsSynchronised_data()
{
    QTest::addColumn<QByteArray>("event");
    QTest::addColumn<QJsonObject>("data");
    const QString records = recordsText({remoteRecord(40), remoteRecord(41)});
    QTest::newRow("from the web service")
        << QByteArray("remote_service_data") << QJsonObject {{"data", records}};
    QTest::newRow("from a remote control")
        << QByteArray("remote_control_data")
        << QJsonObject {{"msg", "service_operation_done"}, {"data", records}, {"sinkId", 4}};
}

void TestRemoteMessages::remoteServiceDataIsSynchronised()
{
    QFETCH(QByteArray, event);
    QFETCH(QJsonObject, data);
    LoadedPlugin host;
    host.send(event.constData(), data);
    auto messages = host.awaitReload();
    // The reload's message goes out before the archive's.
    QVERIFY(QTest::qWaitFor([&] { return messages.size() + host.messages.size() == 2; }));
    messages += host.takeMessages();
    QCOMPARE(messages.first().event, "update_pending_service");
    const auto archive = messages.last();
    QCOMPARE(archive.module, "garage_stats_updater");
    QCOMPARE(archive.event, "remote_service_move_to_archive");
    QCOMPARE(archive.data, json(R"({"idList": [40, 41]})"));
    QCOMPARE(database->value("SELECT count(*) FROM maintainance WHERE operation_state=1").toInt(), 2);
    QVERIFY(host.noFurtherReload());
}

void TestRemoteMessages::unusableServiceDataDoesNothing_data()
{
    QTest::addColumn<QJsonValue>("data");
    QTest::newRow("missing") << QJsonValue();
    QTest::newRow("empty text") << QJsonValue(QString());
    QTest::newRow("an empty array") << QJsonValue("[]");
    QTest::newRow("no JSON") << QJsonValue("[{");
    QTest::newRow("an object") << QJsonValue(R"({"id":1})");
    QTest::newRow("an array instead of its text") << QJsonValue(QJsonArray {remoteRecord(1)});
}

void TestRemoteMessages::unusableServiceDataDoesNothing()
{
    QFETCH(QJsonValue, data);
    LoadedPlugin host;
    QVERIFY(host.ask("remote_service_data", {{"data", data}}).isEmpty());
    QVERIFY(host.noFurtherReload());
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 0);
}

void TestRemoteMessages::theWindowsButtonsAnswerRemoteControlsToo()
{
    LoadedPlugin host;
    QWidget *window = host.window();
    host.showWindow();
    child<QTabWidget>(*window, "tabWidget")->setCurrentIndex(0);
    host.send("cars_list_changed", {{"cars", carsList().value("cars")}, {"noStatsUpdate", true}});
    child<QTreeView>(*window, "tvAllCars")->selectAll();
    host.takeMessages();
    press(child<QPushButton>(*window, "pbSetAvailable"));
    const auto messages = host.takeMessages();
    QCOMPARE(LoadedPlugin::names(messages), QStringList({"update_cars", "remote_control_answer"}));
    QJsonObject expected = json(R"({"carsIdsList": [2, 1], "command": "set_availability", "available": 1})");
    expected.insert("requestSrc", "ui");
    QCOMPARE(messages.at(0).data, expected);
    expected.insert("sinkId", -1);
    expected.insert("req_answ", json(R"({"carAvailable": true, "carsIdsList": [2, 1], "status": "ok"})"));
    QCOMPARE(messages.at(1).data, expected);
    QCOMPARE(messages.at(1).module, "garage_plugin");
}

GARAGE_TEST(TestRemoteMessages)
#include "tst_remotemessages.moc"
