#include "support/garagetest.h"
#include "support/loadedplugin.h"

#include <QComboBox>
#include <QDialog>
#include <QJsonDocument>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>

namespace {

QJsonObject car(int id, const QString &num, bool available)
{
    return {{"id", id}, {"num", num}, {"name", "Sodi"}, {"available_for_runs", available}};
}

QJsonObject carsList()
{
    return {{"cars", QJsonArray {car(1, "10", true), car(2, "9", false)}}};
}

QJsonObject toggleRequest(int carId)
{
    return {
        {"msg", "switchCarAvailability"}, {"data", QJsonObject {{"carId", carId}}}, {"sinkId", "пульт 7"}};
}

QJsonObject availabilityCommand(int carId, int available)
{
    return {{"carsIdsList", QJsonArray {carId}}, {"command", "set_availability"}, {"available", available}};
}

QString recordsText(const QJsonArray &records)
{
    return QString::fromUtf8(QJsonDocument(records).toJson());
}

QJsonObject remoteRecord(int id)
{
    return {{"id", id}, {"carId", 1}, {"opId", 1}, {"opDoneDateTime", "2026-03-08T09:30Z"}};
}

template<class Widget> Widget *in(QWidget *parent, const char *name)
{
    auto *widget = parent->findChild<Widget *>(QLatin1String(name));
    if (!widget)
        qFatal("There is no %s", name);
    return widget;
}

} // namespace

/// Every message of the catalogue, in both directions, through the finished library.
class TestHostProtocol : public GarageTest
{
    Q_OBJECT
private slots:
    void clickedWithShowGarageInsertsTheTab();
    void clickedWithAnotherKeyDoesNothing_data();
    void clickedWithAnotherKeyDoesNothing();
    void theCloseButtonsAskToHideTheTab();
    void loadCompleteAsksForCarsAndRemoteService();
    void sendSettingsDialogsIsAnsweredWithThePage();
    void runSavedToDbReloads();
    void unknownAndIdleEventsDoNothing_data();
    void unknownAndIdleEventsDoNothing();
    void theModuleNameOfIncomingMessagesIsIgnored();
    void carsListChangedRefreshesListsAndReglament();
    void carsListChangedReloadsOnlyAVisibleWindow_data();
    void carsListChangedReloadsOnlyAVisibleWindow();
    void theReloadIsAskedForBeforeTheListsAreRefreshed();
    void peopleReachTheDialogs_data();
    void peopleReachTheDialogs();
    void remoteTogglesAreCarriedOutAndAnswered_data();
    void remoteTogglesAreCarriedOutAndAnswered();
    void otherRemoteMessagesGetNoAnswer_data();
    void otherRemoteMessagesGetNoAnswer();
    void remoteServiceDataIsSynchronised_data();
    void remoteServiceDataIsSynchronised();
    void unusableServiceDataDoesNothing_data();
    void unusableServiceDataDoesNothing();
    void theWindowsButtonsAnswerRemoteControlsToo();
    void renamedOperationsAreAnnounced();
    void reloadsAreTriggeredExactlyAsOftenAsAgreed();
    void hostileMessagesDoNoHarm();
};

void TestHostProtocol::clickedWithShowGarageInsertsTheTab()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    const auto answer = host.ask("clicked", {{"key", "show_garage"}});
    QCOMPARE(answer.size(), 1);
    QCOMPARE(answer.first().module, "garage_plugin");
    QCOMPARE(answer.first().event, "insert_tab");
    QCOMPARE(answer.first().data,
             QJsonObject({{"tabWidget", qint64(quintptr(host.window()))},
                          {"tabCaption", "Гараж"},
                          {"index", 0},
                          {"moduleName", "garage_plugin"}}));
    QVERIFY(host.window()->inherits("GarageForm"));
}

void TestHostProtocol::clickedWithAnotherKeyDoesNothing_data()
{
    QTest::addColumn<QJsonObject>("data");
    QTest::newRow("another key") << QJsonObject {{"key", "show_track"}};
    QTest::newRow("no key") << QJsonObject();
    QTest::newRow("not a text") << QJsonObject {{"key", 1}};
    QTest::newRow("another case") << QJsonObject {{"key", "Show_Garage"}};
}

void TestHostProtocol::clickedWithAnotherKeyDoesNothing()
{
    QFETCH(QJsonObject, data);
    const auto database = createDatabase();
    LoadedPlugin host;
    QVERIFY(host.ask("clicked", data).isEmpty());
}

void TestHostProtocol::theCloseButtonsAskToHideTheTab()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    QWidget *window = host.window();
    host.showWindow();
    auto *tabs = in<QTabWidget>(window, "tabWidget");
    const char *buttons[] = {"pbCloseGarage_3", "pbCloseGarage", "pbCloseGarage_2"};
    for (int tab = 0; tab < 3; ++tab) {
        tabs->setCurrentIndex(tab);
        host.takeMessages();
        QTest::mouseClick(in<QPushButton>(window, buttons[tab]), Qt::LeftButton);
        const auto messages = host.takeMessages();
        QCOMPARE(LoadedPlugin::names(messages), QStringList("close_tab"));
        QCOMPARE(messages.first().module, "garage_plugin");
        QCOMPARE(messages.first().data,
                 QJsonObject({{"tabWidget", qint64(quintptr(window))},
                              {"moduleName", "garage_plugin"},
                              {"onlyHide", true}}));
        QVERIFY(window->isVisible()); // hiding is the host's
    }
}

void TestHostProtocol::loadCompleteAsksForCarsAndRemoteService()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    QVERIFY(!host.plugin()->subscribedEvents().contains("load_complete"));
    const auto answer = host.ask("load_complete");
    QCOMPARE(LoadedPlugin::names(answer), QStringList({"read_cars_list", "update_remote_service"}));
    for (const auto &message : answer) {
        QCOMPARE(message.module, "garage_plugin");
        QVERIFY(message.data.isEmpty());
    }
}

void TestHostProtocol::sendSettingsDialogsIsAnsweredWithThePage()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    const auto answer = host.ask("send_settings_dialogs");
    QCOMPARE(answer.size(), 1);
    QCOMPARE(answer.first().module, "garage_plugin");
    QCOMPARE(answer.first().event, "settings_dialog");
    QCOMPARE(answer.first().data,
             QJsonObject({{"moduleName", "garage_plugin"},
                          {"settingsCaption", "Гараж"},
                          {"settingsPagePtr", qint64(quintptr(host.plugin()->settingsPage()))}}));
}

void TestHostProtocol::runSavedToDbReloads()
{
    const auto database = createDatabase();
    database->addCar(1, "10", "Sodi");
    LoadedPlugin host;
    host.send("run_saved_to_db"); // the window need not be visible
    const auto messages = host.awaitReload();
    QCOMPARE(LoadedPlugin::names(messages), QStringList("update_pending_service"));
    QCOMPARE(messages.first().module, "garage_stats_updater");
    QCOMPARE(messages.first().data,
             QJsonObject({{"servicePendingList", QJsonArray()},
                          {"maintainanceStatus",
                           QJsonArray {QJsonObject {{"carId", 1}, {"opsStatus", QJsonObject()}}}}}));
    QVERIFY(host.noFurtherReload());
}

void TestHostProtocol::unknownAndIdleEventsDoNothing_data()
{
    QTest::addColumn<QByteArray>("event");
    for (const char *event : {"run_closed", "", "RUN_SAVED_TO_DB", "insert_tab", "update_cars", "unknown"})
        QTest::newRow(*event ? event : "empty") << QByteArray(event);
}

void TestHostProtocol::unknownAndIdleEventsDoNothing()
{
    QFETCH(QByteArray, event);
    const auto database = createDatabase();
    LoadedPlugin host;
    QVERIFY(host.ask(event.constData(), carsList()).isEmpty());
    QVERIFY(host.noFurtherReload());
}

void TestHostProtocol::theModuleNameOfIncomingMessagesIsIgnored()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    for (const char *module : {"", "garage_plugin", "трек"}) {
        host.takeMessages();
        host.send("send_settings_dialogs", {}, module);
        QCOMPARE(host.messages.size(), 1);
    }
}

void TestHostProtocol::carsListChangedRefreshesListsAndReglament()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    QWidget *window = host.window();
    QWidget *page = host.settingsPage();
    const auto *reglament = in<QTreeView>(page, "tvServiceReglament")->model();
    QCOMPARE(reglament->rowCount(), 0);
    database->addCar(1, "10", "Sodi");
    QVERIFY(host.ask("cars_list_changed", carsList()).isEmpty());
    QCOMPARE(in<QTreeView>(window, "tvAllCars")->model()->rowCount(), 2);
    QCOMPARE(in<QTreeView>(window, "tvAvailableCars")->model()->rowCount(), 1);
    QCOMPARE(reglament->rowCount(), 1);
    QVERIFY(host.noFurtherReload());
}

void TestHostProtocol::carsListChangedReloadsOnlyAVisibleWindow_data()
{
    QTest::addColumn<bool>("visible");
    QTest::addColumn<QJsonValue>("noStatsUpdate");
    QTest::addColumn<bool>("reloads");
    QTest::newRow("hidden") << false << QJsonValue() << false;
    QTest::newRow("visible") << true << QJsonValue() << true;
    QTest::newRow("visible, false") << true << QJsonValue(false) << true;
    QTest::newRow("visible, true") << true << QJsonValue(true) << false;
    QTest::newRow("visible, a number is not true") << true << QJsonValue(1) << true;
    QTest::newRow("hidden, false") << false << QJsonValue(false) << false;
}

void TestHostProtocol::carsListChangedReloadsOnlyAVisibleWindow()
{
    QFETCH(bool, visible);
    QFETCH(QJsonValue, noStatsUpdate);
    QFETCH(bool, reloads);
    const auto database = createDatabase();
    LoadedPlugin host;
    if (visible)
        host.showWindow();
    QJsonObject data = carsList();
    if (!noStatsUpdate.isNull())
        data.insert("noStatsUpdate", noStatsUpdate);
    host.send("cars_list_changed", data);
    if (reloads)
        QCOMPARE(LoadedPlugin::names(host.awaitReload()), QStringList("update_pending_service"));
    QVERIFY(host.noFurtherReload());
    QCOMPARE(in<QTreeView>(host.window(), "tvAllCars")->model()->rowCount(), 2);
}

void TestHostProtocol::theReloadIsAskedForBeforeTheListsAreRefreshed()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    host.showWindow();
    QWidget *window = host.window();
    const auto *cars = in<QTreeView>(window, "tvAllCars")->model();
    QObject receiver;
    int rowsWhenAsked = -1;
    const QMetaMethod signal =
        window->metaObject()->method(window->metaObject()->indexOfSignal("reloadGarageStats()"));
    QTimer probe; // its slot is called directly by the signal
    connect(&probe, &QTimer::timeout, &receiver, [] {});
    QObject::connect(window, signal, &probe,
                     probe.metaObject()->method(probe.metaObject()->indexOfSlot("start()")));
    probe.setInterval(0);
    probe.setSingleShot(true);
    connect(cars, &QAbstractItemModel::layoutAboutToBeChanged, &receiver,
            [&] { rowsWhenAsked = probe.isActive() ? cars->rowCount() : -2; });
    host.send("cars_list_changed", carsList());
    QCOMPARE(rowsWhenAsked, 0);
    host.awaitReload();
}

void TestHostProtocol::peopleReachTheDialogs_data()
{
    QTest::addColumn<bool>("shownBefore");
    QTest::newRow("before the window is shown") << false;
    QTest::newRow("after") << true;
}

void TestHostProtocol::peopleReachTheDialogs()
{
    QFETCH(bool, shownBefore);
    const auto database = createDatabase();
    database->addCar(1, "10", "Sodi");
    LoadedPlugin host;
    if (shownBefore)
        host.showWindow();
    const QJsonArray people {QJsonObject {{"id", 5}, {"lastName", "Ким"}}};
    QVERIFY(host.ask("personal_list", {{"personalList", people}}).isEmpty());
    host.send("load_complete");
    if (!shownBefore)
        host.showWindow();

    QTimer::singleShot(0, &host, [] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        const auto *combo = in<QComboBox>(dialog, "cbPersonal");
        QCOMPARE(combo->count(), 2);
        QCOMPARE(combo->itemText(1), "Ким");
        dialog->reject();
    });
    host.send("car_complain", {{"carId", 1}});
    QVERIFY(host.noFurtherReload());
}

void TestHostProtocol::remoteTogglesAreCarriedOutAndAnswered_data()
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

void TestHostProtocol::remoteTogglesAreCarriedOutAndAnswered()
{
    QFETCH(int, carId);
    QFETCH(QJsonValue, skipAnswer);
    QFETCH(int, command);
    QFETCH(bool, answered);
    const auto database = createDatabase();
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

void TestHostProtocol::otherRemoteMessagesGetNoAnswer_data()
{
    QTest::addColumn<QJsonObject>("request");
    QTest::newRow("no message") << QJsonObject();
    QTest::newRow("an unknown one") << QJsonObject {{"msg", "startRun"}, {"sinkId", 3}};
    QTest::newRow("car -1") << toggleRequest(-1);
    QJsonObject text = toggleRequest(1);
    text.insert("data", QJsonObject {{"carId", "первый"}});
    QTest::newRow("no number") << text;
    text.insert("data", "1");
    QTest::newRow("data is no object") << text;
    QTest::newRow("service done without records")
        << QJsonObject {{"msg", "service_operation_done"}, {"data", "[]"}};
}

void TestHostProtocol::otherRemoteMessagesGetNoAnswer()
{
    QFETCH(QJsonObject, request);
    const auto database = createDatabase();
    LoadedPlugin host;
    host.send("cars_list_changed", carsList());
    QVERIFY(host.ask("remote_control_data", request).isEmpty());
    QVERIFY(host.noFurtherReload());
    QVERIFY(host.messages.isEmpty());
}

void TestHostProtocol::remoteServiceDataIsSynchronised_data()
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

void TestHostProtocol::remoteServiceDataIsSynchronised()
{
    QFETCH(QByteArray, event);
    QFETCH(QJsonObject, data);
    const auto database = createDatabase();
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
    QCOMPARE(archive.data, QJsonObject({{"idList", QJsonArray({40, 41})}}));
    QCOMPARE(database->value("SELECT count(*) FROM maintainance WHERE operation_state=1").toInt(), 2);
    QVERIFY(host.noFurtherReload());
}

void TestHostProtocol::unusableServiceDataDoesNothing_data()
{
    QTest::addColumn<QJsonValue>("data");
    QTest::newRow("missing") << QJsonValue();
    QTest::newRow("empty text") << QJsonValue(QString());
    QTest::newRow("an empty array") << QJsonValue("[]");
    QTest::newRow("no JSON") << QJsonValue("[{");
    QTest::newRow("an object") << QJsonValue("{\"id\":1}");
    QTest::newRow("an array instead of its text") << QJsonValue(QJsonArray {remoteRecord(1)});
}

void TestHostProtocol::unusableServiceDataDoesNothing()
{
    QFETCH(QJsonValue, data);
    const auto database = createDatabase();
    LoadedPlugin host;
    QVERIFY(host.ask("remote_service_data", {{"data", data}}).isEmpty());
    QVERIFY(host.noFurtherReload());
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 0);
}

void TestHostProtocol::theWindowsButtonsAnswerRemoteControlsToo()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    QWidget *window = host.window();
    host.showWindow();
    in<QTabWidget>(window, "tabWidget")->setCurrentIndex(0);
    host.send("cars_list_changed", {{"cars", carsList().value("cars")}, {"noStatsUpdate", true}});
    in<QTreeView>(window, "tvAllCars")->selectAll();
    host.takeMessages();
    QTest::mouseClick(in<QPushButton>(window, "pbSetAvailable"), Qt::LeftButton);
    const auto messages = host.takeMessages();
    QCOMPARE(LoadedPlugin::names(messages), QStringList({"update_cars", "remote_control_answer"}));
    QJsonObject expected {{"carsIdsList", QJsonArray {2, 1}},
                          {"command", "set_availability"},
                          {"available", 1},
                          {"requestSrc", "ui"}};
    QCOMPARE(messages.at(0).data, expected);
    expected.insert(
        "req_answ",
        QJsonObject {{"carAvailable", true}, {"carsIdsList", QJsonArray {2, 1}}, {"status", "ok"}});
    expected.insert("sinkId", -1);
    QCOMPARE(messages.at(1).data, expected);
    QCOMPARE(messages.at(1).module, "garage_plugin");
}

void TestHostProtocol::renamedOperationsAreAnnounced()
{
    const auto database = createDatabase();
    database->addOperation(3, "Масло");
    LoadedPlugin host;
    auto *model = in<QTreeView>(host.settingsPage(), "tvServiceOperations")->model();
    host.takeMessages();
    QVERIFY(model->setData(model->index(0, 1), "Смазка"));
    const auto messages = host.takeMessages();
    QCOMPARE(messages.size(), 1);
    QCOMPARE(messages.first().module, "garage_settings");
    QCOMPARE(messages.first().event, "service_ops_changed");
    QCOMPARE(messages.first().data,
             QJsonObject({{"opsList", QJsonArray {QJsonObject {{"id", 3}, {"opName", "Смазка"}}}}}));
    QVERIFY(host.noFurtherReload());
}

void TestHostProtocol::reloadsAreTriggeredExactlyAsOftenAsAgreed()
{
    const auto database = createDatabase();
    database->addCar(1, "10", "Sodi");
    LoadedPlugin host;
    QWidget *window = host.window();
    QVERIFY(host.noFurtherReload()); // none by construction

    host.showWindow();
    QVERIFY(host.noFurtherReload());
    window->hide();
    QVERIFY(host.noFurtherReload());
    host.showWindow();
    QVERIFY(host.noFurtherReload());

    auto *tabs = in<QTabWidget>(window, "tabWidget");
    for (const auto &[tab, button] : {std::pair(1, "pbReloadMaintainance"), std::pair(2, "pbReloadLog")}) {
        tabs->setCurrentIndex(tab);
        QTest::mouseClick(in<QPushButton>(window, button), Qt::LeftButton);
        host.awaitReload();
        QVERIFY(host.noFurtherReload());
    }

    host.send("run_saved_to_db");
    host.awaitReload();
    QVERIFY(host.noFurtherReload());

    QTimer::singleShot(0, &host, [] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        dialog->accept();
    });
    host.send("car_complain", {{"carId", 1}});
    host.awaitReload();
    QVERIFY(host.noFurtherReload());

    host.send("remote_service_data", {{"data", recordsText({remoteRecord(4)})}});
    host.awaitReload();
    QVERIFY(host.noFurtherReload());

    for (const char *event : {"load_complete", "personal_list", "send_settings_dialogs", "run_closed"})
        host.send(event);
    host.send("clicked", {{"key", "show_garage"}});
    host.send("remote_control_data", toggleRequest(1));
    QVERIFY(host.noFurtherReload());
}

void TestHostProtocol::hostileMessagesDoNoHarm()
{
    const auto database = createDatabase();
    database->addCar(1, "10", "Sodi");
    LoadedPlugin host;
    host.showWindow();
    const QJsonArray values {QJsonValue(),
                             true,
                             -1,
                             1e300,
                             "%s%n%1",
                             QString(100000, 'x'),
                             QJsonArray {1, QJsonArray()},
                             QJsonObject {{"carId", QJsonObject()}}};
    const char *events[] = {
        "clicked",   "cars_list_changed", "personal_list", "remote_control_data", "remote_service_data",
        "run_closed"};
    for (const char *event : events) {
        for (const QJsonValue &value : values) {
            QJsonObject data {{"noStatsUpdate", true}};
            for (const char *key :
                 {"key", "cars", "personalList", "msg", "data", "sinkId", "skipAnswer", "carId"})
                data.insert(QLatin1String(key), value);
            host.send(event, data);
            data.insert("cars", QJsonArray {value, value});
            data.insert("personalList", QJsonArray {value});
            data.insert("msg", "switchCarAvailability");
            host.send(event, data);
        }
    }
    host.send("run_saved_to_db");
    host.awaitReload();
    QVERIFY(host.noFurtherReload());
}

GARAGE_TEST(TestHostProtocol)
#include "tst_hostprotocol.moc"
