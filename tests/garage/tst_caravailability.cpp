#include "support/garagetest.h"
#include "support/garagewindow.h"
#include "support/json.h"

#include <QTreeView>

namespace {

QJsonObject car(int id, const QString &num, const QString &name, bool available)
{
    return {{"id", id},
            {"num", num},
            {"name", name},
            {"car_guid", QString("guid-%1").arg(id)},
            {"available_for_runs", available}};
}

QJsonObject carsList()
{
    return {
        {"cars",
         QJsonArray {car(11, "1", "Sodi", true), car(12, "2", "Sodi", true), car(13, "3", "Sodi", false)}}};
}

QJsonObject command(const QJsonArray &ids, int available)
{
    return {{"carsIdsList", ids}, {"command", "set_availability"}, {"available", available}};
}

QJsonObject remoteRequest(const QJsonValue &carId)
{
    return {{"msg", "switchCarAvailability"}, {"sinkId", 42}, {"data", QJsonObject {{"carId", carId}}}};
}

} // namespace

/// Cars in and out of work, by the user and by remote controls.
class TestCarAvailability : public DatabaseTest
{
    Q_OBJECT
private slots:
    void theListsShowAllAndTheAvailableCars();
    void theButtonsMoveAllSelectedCars_data();
    void theButtonsMoveAllSelectedCars();
    void aDoubleClickActsOnTheSelection();
    void nothingSelectedNothingSent();
    void remoteRequestsToggleACar_data();
    void remoteRequestsToggleACar();

private:
    static void select(QTreeView *view, const QVector<int> &rows);
};

void TestCarAvailability::select(QTreeView *view, const QVector<int> &rows)
{
    for (int row : rows) {
        click(view, view->model()->index(row, 1), Qt::ControlModifier);
    }
}

void TestCarAvailability::theListsShowAllAndTheAvailableCars()
{
    GarageWindow window;
    window.form->loadCars(carsList());
    QCOMPARE(rowTexts(*window.find<QTreeView>("tvAllCars")->model()),
             QStringList({"1|Sodi|1", "2|Sodi|2", "3|Sodi|3"}));
    QCOMPARE(rowTexts(*window.find<QTreeView>("tvAvailableCars")->model()),
             QStringList({"1|Sodi|1", "2|Sodi|2"}));
}

void TestCarAvailability::theButtonsMoveAllSelectedCars_data()
{
    QTest::addColumn<QByteArray>("viewName");
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QVector<int>>("rows");
    QTest::addColumn<QJsonArray>("ids");
    QTest::addColumn<int>("available");
    QTest::newRow("two into work") << QByteArray("tvAllCars") << QByteArray("pbSetAvailable")
                                   << QVector<int>({2, 0}) << QJsonArray({11, 13}) << 1;
    QTest::newRow("one out of work") << QByteArray("tvAvailableCars") << QByteArray("pbRemoveAvailable")
                                     << QVector<int>({1}) << QJsonArray({12}) << 0;
}

void TestCarAvailability::theButtonsMoveAllSelectedCars()
{
    QFETCH(QByteArray, viewName);
    QFETCH(QByteArray, button);
    QFETCH(QVector<int>, rows);
    QFETCH(QJsonArray, ids);
    QFETCH(int, available);
    GarageWindow window;
    window.show();
    window.openTab("tabAvailableCars");
    window.form->loadCars(carsList());
    auto *view = window.find<QTreeView>(viewName.constData());
    select(view, rows);
    const int rowsBefore = view->model()->rowCount();
    window.takeEvents();
    window.click(button.constData());

    const auto events = window.takeEvents();
    QCOMPARE(events.size(), 2);
    QJsonObject expected = command(ids, available);
    expected.insert("requestSrc", "ui");
    QCOMPARE(events.at(0).name, "update_cars");
    QCOMPARE(events.at(0).data, expected);
    expected.insert("sinkId", -1);
    expected.insert("req_answ",
                    QJsonObject {{"carAvailable", available == 1}, {"carsIdsList", ids}, {"status", "ok"}});
    QCOMPARE(events.at(1).name, "remote_control_answer");
    QCOMPARE(events.at(1).data, expected);
    QVERIFY(!view->selectionModel()->hasSelection());
    QCOMPARE(view->model()->rowCount(), rowsBefore);
}

void TestCarAvailability::aDoubleClickActsOnTheSelection()
{
    GarageWindow window;
    window.show();
    window.openTab("tabAvailableCars");
    window.form->loadCars(carsList());
    for (const char *name : {"tvAllCars", "tvAvailableCars"}) {
        auto *view = window.find<QTreeView>(name);
        window.takeEvents();
        doubleClick(view, view->model()->index(1, 1));
        QCOMPARE(window.eventNames(), QStringList({"update_cars", "remote_control_answer"}));
        QCOMPARE(window.events.first().data.value("carsIdsList").toArray(), QJsonArray({12}));
        QCOMPARE(window.events.first().data.value("available").toInt(), QString(name) == "tvAllCars" ? 1 : 0);
    }
}

void TestCarAvailability::nothingSelectedNothingSent()
{
    GarageWindow window;
    window.show();
    window.openTab("tabAvailableCars");
    window.form->loadCars(carsList());
    window.takeEvents();
    window.click("pbSetAvailable");
    window.click("pbRemoveAvailable");
    QVERIFY(window.events.isEmpty());
}

void TestCarAvailability::remoteRequestsToggleACar_data()
{
    QTest::addColumn<QJsonObject>("request");
    QTest::addColumn<QJsonObject>("answer");
    QTest::addColumn<QJsonObject>("sent");
    const auto answer = [](int carId, bool available) {
        return QJsonObject {{"status", "ok"}, {"carId", carId}, {"carAvailable", available}, {"sinkId", -1}};
    };
    QTest::newRow("available: out of work") << remoteRequest(11) << answer(11, false) << command({11}, 0);
    QTest::newRow("not available: into work") << remoteRequest(13) << answer(13, true) << command({13}, 1);
    QTest::newRow("unknown car") << remoteRequest(99) << answer(99, false) << QJsonObject();
    QTest::newRow("a number as text") << remoteRequest("12") << answer(12, false) << command({12}, 0);
    QTest::newRow("-1") << remoteRequest(-1) << QJsonObject() << QJsonObject();
    QTest::newRow("no number") << remoteRequest("карт") << QJsonObject() << QJsonObject();
    QTest::newRow("no car id") << remoteRequest(QJsonValue::Undefined) << QJsonObject() << QJsonObject();
    QTest::newRow("null") << remoteRequest(QJsonValue::Null) << QJsonObject() << QJsonObject();
    QTest::newRow("no data") << json(R"({"msg": "switchCarAvailability"})") << QJsonObject() << QJsonObject();
    QTest::newRow("another message") << json(R"({"msg": "start"})") << QJsonObject() << QJsonObject();
}

void TestCarAvailability::remoteRequestsToggleACar()
{
    QFETCH(QJsonObject, request);
    QFETCH(QJsonObject, sent);
    GarageWindow window;
    window.form->loadCars(carsList());
    QTEST(window.form->remoteControlRequest({}, request), "answer");
    if (sent.isEmpty()) {
        QVERIFY(window.events.isEmpty());
        return;
    }
    QCOMPARE(window.eventNames(), QStringList("update_cars"));
    QCOMPARE(window.events.first().data, sent);
}

GARAGE_TEST(TestCarAvailability)
#include "tst_caravailability.moc"
