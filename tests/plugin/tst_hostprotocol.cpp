#include "samplemessages.h"
#include "support/garagetest.h"
#include "support/loadedplugin.h"
#include "support/userinput.h"

#include <QComboBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>

using namespace SampleMessages;

/// The messages between host and finished library, except those of remote controls and the web service.
class TestHostProtocol : public DatabaseTest
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
    void renamedOperationsAreAnnounced();
    void eachTriggerCausesExactlyOneReload();
    void hostileMessagesDoNoHarm();
};

void TestHostProtocol::clickedWithShowGarageInsertsTheTab()
{
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
    QTest::newRow("another key") << json(R"({"key": "show_track"})");
    QTest::newRow("no key") << QJsonObject();
    QTest::newRow("not a text") << json(R"({"key": 1})");
    QTest::newRow("another case") << json(R"({"key": "Show_Garage"})");
}

void TestHostProtocol::clickedWithAnotherKeyDoesNothing()
{
    QFETCH(QJsonObject, data);
    LoadedPlugin host;
    QVERIFY(host.ask("clicked", data).isEmpty());
}

void TestHostProtocol::theCloseButtonsAskToHideTheTab()
{
    LoadedPlugin host;
    QWidget *window = host.window();
    host.showWindow();
    auto *tabs = child<QTabWidget>(*window, "tabWidget");
    const char *buttons[] = {"pbCloseGarage_3", "pbCloseGarage", "pbCloseGarage_2"};
    for (int tab = 0; tab < 3; ++tab) {
        tabs->setCurrentIndex(tab);
        host.takeMessages();
        press(child<QPushButton>(*window, buttons[tab]));
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
    database->addCar(1, "10", "Sodi");
    LoadedPlugin host;
    host.send("run_saved_to_db"); // the window need not be visible
    const auto messages = host.awaitReload();
    QCOMPARE(LoadedPlugin::names(messages), QStringList("update_pending_service"));
    QCOMPARE(messages.first().module, "garage_stats_updater");
    QCOMPARE(messages.first().data,
             json(R"({"servicePendingList": [], "maintainanceStatus": [{"carId": 1, "opsStatus": {}}]})"));
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
    LoadedPlugin host;
    QVERIFY(host.ask(event.constData(), carsList()).isEmpty());
    QVERIFY(host.noFurtherReload());
}

void TestHostProtocol::theModuleNameOfIncomingMessagesIsIgnored()
{
    LoadedPlugin host;
    for (const char *module : {"", "garage_plugin", "трек"}) {
        host.takeMessages();
        host.send("send_settings_dialogs", {}, module);
        QCOMPARE(host.messages.size(), 1);
    }
}

void TestHostProtocol::carsListChangedRefreshesListsAndReglament()
{
    LoadedPlugin host;
    QWidget *window = host.window();
    QWidget *page = host.settingsPage();
    const auto *reglament = child<QTreeView>(*page, "tvServiceReglament")->model();
    QCOMPARE(reglament->rowCount(), 0);
    database->addCar(1, "10", "Sodi");
    QVERIFY(host.ask("cars_list_changed", carsList()).isEmpty());
    QCOMPARE(child<QTreeView>(*window, "tvAllCars")->model()->rowCount(), 2);
    QCOMPARE(child<QTreeView>(*window, "tvAvailableCars")->model()->rowCount(), 1);
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
    QCOMPARE(child<QTreeView>(*host.window(), "tvAllCars")->model()->rowCount(), 2);
}

void TestHostProtocol::theReloadIsAskedForBeforeTheListsAreRefreshed()
{
    LoadedPlugin host;
    host.showWindow();
    QWidget *window = host.window();
    const auto *cars = child<QTreeView>(*window, "tvAllCars")->model();
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
    database->addCar(1, "10", "Sodi");
    LoadedPlugin host;
    if (shownBefore)
        host.showWindow();
    const QJsonObject people = json(R"({"personalList": [{"id": 5, "lastName": "Ким"}]})");
    QVERIFY(host.ask("personal_list", people).isEmpty());
    host.send("load_complete");
    if (!shownBefore)
        host.showWindow();

    onNextDialog([](QDialog &dialog) {
        const auto *combo = child<QComboBox>(dialog, "cbPersonal");
        QCOMPARE(combo->count(), 2);
        QCOMPARE(combo->itemText(1), "Ким");
        dialog.reject();
    });
    host.send("car_complain", {{"carId", 1}});
    QVERIFY(allDialogsAnswered());
    QVERIFY(host.noFurtherReload());
}

void TestHostProtocol::renamedOperationsAreAnnounced()
{
    database->addOperation(3, "Масло");
    LoadedPlugin host;
    auto *model = child<QTreeView>(*host.settingsPage(), "tvServiceOperations")->model();
    host.takeMessages();
    QVERIFY(model->setData(model->index(0, 1), "Смазка"));
    const auto messages = host.takeMessages();
    QCOMPARE(messages.size(), 1);
    QCOMPARE(messages.first().module, "garage_settings");
    QCOMPARE(messages.first().event, "service_ops_changed");
    QCOMPARE(messages.first().data, json(R"({"opsList": [{"id": 3, "opName": "Смазка"}]})"));
    QVERIFY(host.noFurtherReload());
}

void TestHostProtocol::eachTriggerCausesExactlyOneReload()
{
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

    auto *tabs = child<QTabWidget>(*window, "tabWidget");
    for (const auto &[tab, button] : {std::pair(1, "pbReloadMaintainance"), std::pair(2, "pbReloadLog")}) {
        tabs->setCurrentIndex(tab);
        press(child<QPushButton>(*window, button));
        host.awaitReload();
        QVERIFY(host.noFurtherReload());
    }

    host.send("run_saved_to_db");
    host.awaitReload();
    QVERIFY(host.noFurtherReload());

    onNextDialog(QDialogButtonBox::Ok);
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
                             json(R"({"carId": {}})")};
    const char *events[] = {
        "clicked",   "cars_list_changed", "personal_list", "remote_control_data", "remote_service_data",
        "run_closed"};
    for (const char *event : events) {
        for (const QJsonValue &value : values) {
            QJsonObject data {{"noStatsUpdate", true}};
            for (const char *key :
                 {"key", "cars", "personalList", "msg", "data", "sinkId", "skipAnswer", "carId"})
                data.insert(key, value);
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
