#include "data/qtcompatibility.h"
#include "host/plugin/pluginmetadata.h"
#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/json.h"
#include "support/loadedplugin.h"

#include <QCborStreamReader>
#include <QProcess>
#include <QVBoxLayout>

#include <dlfcn.h>

namespace {

/// Past Qt's own loader, which would take the library for one that it knows already.
void *entryPoint(const char *name)
{
    static void *const library = dlopen(GARAGE_PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    return library ? dlsym(library, name) : nullptr;
}

/// The threads of this process except those of Qt's pools, which end some time after their last job.
QStringList threadNames()
{
    QStringList names;
    const QDir threads("/proc/self/task");
    for (const QString &id : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile name(threads.filePath(id + "/comm"));
        if (name.open(QIODevice::ReadOnly))
            names.append(name.readAll().trimmed());
    }
    names.removeAll("Thread (pooled)");
    names.sort();
    return names;
}

const QJsonObject oneRemoteRecord {{"data",
                                    "[{\"id\":40,\"carId\":1,\"opId\":1,"
                                    "\"opDoneDateTime\":\"2026-03-01T10:00:00Z\"}]"}};

} // namespace

/// The interface as hosts in the field have it compiled in: never to be changed along with the header.
/// Not in the anonymous namespace: the compiler would resolve the calls of a class with internal linkage.
class FieldHostInterface : public QObject
{
public:
    qint32 pluginOrder = 0;
    QString pluginVersion;
    QString pluginDescription;
    QString fileName;

    virtual QWidget *settingsPage() = 0;
    virtual QWidget *auxiliaryWidget() = 0;
    virtual QString caption() = 0;
    virtual QString moduleName() = 0;
    virtual QStringList emittedEvents() = 0;
    virtual QStringList subscribedEvents() = 0;
    virtual void pluginSlot(QString module, QString event, QJsonObject jsonData) = 0;
};

/// The library as the host's plug-in loader sees it: metadata, entry points, casts, coming and going.
class TestPluginLibrary : public GarageTest
{
    Q_OBJECT
private slots:
    void itsMetadataNamesInterfaceAndClass();
    void itsMetadataBlockHoldsTwoEntries();
    void itsRootObjectIsSingleAndMadeAnewAfterItsEnd();
    void itsRootObjectCanBeCastInEveryWay();
    void itAnswersTheInterface();
    void itAnswersAHostWithTheInterfaceCompiledIn();
    void itsMessagesAreVisibleToTheMetaObjectSystem();
    void itLeavesNothingBehind();
    void itCanBeDestroyedDuringAReload();
    void itAnnouncesTheWritesOfItsEnd();
    void itAnnouncesNothingThatItGaveUp();
    void itsWidgetsSurviveTheHostsWindows_data();
    void itsWidgetsSurviveTheHostsWindows();
    void itAnswersOnWithoutItsWindow();
    void itEndsWithAHostThatDoesNotUnload();
};

void TestPluginLibrary::itsMetadataNamesInterfaceAndClass()
{
    const QPluginLoader loader(GARAGE_PLUGIN_FILE);
    const QJsonObject metaData = loader.metaData();
    QCOMPARE(metaData.value("IID").toString(), TRIVEX_PLUGIN_IID);
    QVERIFY(metaData.value("IID").toString().endsWith("/v1.0"));
    QCOMPARE(metaData.value("className").toString(), "RuvaloGaragePlugin");
    QVERIFY(metaData.value("MetaData").toObject().isEmpty());
}

void TestPluginLibrary::itsMetadataBlockHoldsTwoEntries()
{
    const std::optional<PluginMetadata> metadata = readPluginMetadata(GARAGE_PLUGIN_FILE);
    QVERIFY(metadata);
    QCOMPARE(metadata->qtMajorVersion, QT_VERSION_MAJOR);
    QCOMPARE(metadata->entries.size(), 2);
    QCOMPARE(metadata->entries.value(2).toString(), TRIVEX_PLUGIN_IID);
    QCOMPARE(metadata->entries.value(3).toString(), "RuvaloGaragePlugin");

    const auto query = reinterpret_cast<QFunctionPointer>(entryPoint(QtCompatibility::metadataEntryPoint));
    QVERIFY(query);
    constexpr int atLeast = sizeof TRIVEX_PLUGIN_IID + sizeof "RuvaloGaragePlugin";
    const QByteArray returned(QtCompatibility::metadataMap(query), atLeast);
    QVERIFY(returned.contains(TRIVEX_PLUGIN_IID));
    QVERIFY(QCborStreamReader(returned).isMap());
}

void TestPluginLibrary::itsRootObjectIsSingleAndMadeAnewAfterItsEnd()
{
    const auto instance = reinterpret_cast<QObject *(*)()>(entryPoint("qt_plugin_instance"));
    QVERIFY(instance);
    const QPointer<QObject> first = instance();
    QVERIFY(first);
    QVERIFY(!first->parent());
    QCOMPARE(instance(), first.data());
    delete first;
    const QPointer<QObject> second = instance();
    QVERIFY(second);
    QCOMPARE(instance(), second.data());
    delete second;
}

void TestPluginLibrary::itsRootObjectCanBeCastInEveryWay()
{
    LoadedPlugin host;
    QObject *root = QPluginLoader(GARAGE_PLUGIN_FILE).instance();
    QVERIFY(qobject_cast<TrivexPluginInterface *>(root));
    QVERIFY(root->qt_metacast(TRIVEX_PLUGIN_IID));
    QVERIFY(root->qt_metacast("TrivexPluginInterface"));
    QVERIFY(root->inherits("TrivexPluginInterface"));
    QVERIFY(root->inherits("RuvaloGaragePlugin"));
    QCOMPARE(static_cast<TrivexPluginInterface *>(root), host.plugin());
    QCOMPARE(root->qt_metacast(TRIVEX_PLUGIN_IID), static_cast<void *>(host.plugin()));
}

void TestPluginLibrary::itAnswersTheInterface()
{
    LoadedPlugin host;
    TrivexPluginInterface *plugin = host.plugin();
    QCOMPARE(plugin->pluginOrder, 37);
    QCOMPARE(plugin->fileName, "fileNameWin");
    QCOMPARE(plugin->objectName(), "Данные по обслуживанию техники");
    QCOMPARE(plugin->caption(), "Гараж");
    QCOMPARE(plugin->moduleName(), "garage_plugin");
    QVERIFY(!plugin->auxiliaryWidget());
    QVERIFY(plugin->settingsPage()->inherits("GarageSettingsForm"));
}

// The library's object is another class than the mirror by design, which the sanitizer would report.
__attribute__((no_sanitize("undefined"))) void TestPluginLibrary::itAnswersAHostWithTheInterfaceCompiledIn()
{
    LoadedPlugin host;
    auto *plugin = reinterpret_cast<FieldHostInterface *>(host.plugin());
    QCOMPARE(sizeof(TrivexPluginInterface), sizeof(FieldHostInterface));
    // Members first: reading a text where the number lies would crash before any comparison.
    QCOMPARE(plugin->pluginOrder, 37);
    QVERIFY(plugin->pluginVersion.isEmpty());
    QVERIFY(plugin->pluginDescription.isEmpty());
    QCOMPARE(plugin->fileName, "fileNameWin");

    QVERIFY(plugin->settingsPage()->inherits("GarageSettingsForm"));
    QVERIFY(!plugin->auxiliaryWidget());
    QCOMPARE(plugin->caption(), "Гараж");
    QCOMPARE(plugin->moduleName(), "garage_plugin");
    QCOMPARE(plugin->emittedEvents().first(), "insert_tab");
    QCOMPARE(plugin->subscribedEvents().first(), "car_complain");
    plugin->pluginSlot(QString(), "unknown", QJsonObject());
}

void TestPluginLibrary::itsMessagesAreVisibleToTheMetaObjectSystem()
{
    LoadedPlugin host;
    const QMetaObject *interface = host.plugin()->metaObject();
    while (interface && qstrcmp(interface->className(), "TrivexPluginInterface") != 0)
        interface = interface->superClass();
    QVERIFY(interface);
    QCOMPARE(interface->methodCount() - interface->methodOffset(), 2);
    const QMetaMethod signal = interface->method(interface->methodOffset());
    const QMetaMethod slot = interface->method(interface->methodOffset() + 1);
    QCOMPARE(signal.methodSignature(), QByteArray("pluginSignal(QString,QString,QJsonObject)"));
    QCOMPARE(signal.methodType(), QMetaMethod::Signal);
    QCOMPARE(slot.methodSignature(), QByteArray("pluginSlot(QString,QString,QJsonObject)"));
    QCOMPARE(slot.methodType(), QMetaMethod::Slot);
    for (const QMetaMethod &method : {signal, slot})
        QCOMPARE(method.parameterNames(), QByteArrayList({"module", "event", "jsonData"}));

    const QMetaObject *root = host.plugin()->metaObject();
    QCOMPARE(root->methodCount() - root->methodOffset(), 1);
    QCOMPARE(root->method(root->methodOffset()).methodSignature(), QByteArray("closeGarage()"));

    // By name, as a host without the header would call it.
    QVERIFY(QMetaObject::invokeMethod(host.plugin(), "pluginSlot", Q_ARG(QString, QString()),
                                      Q_ARG(QString, "load_complete"), Q_ARG(QJsonObject, {})));
    QCOMPARE(host.messages.size(), 2);
}

void TestPluginLibrary::itLeavesNothingBehind()
{
    const auto database = createDatabase();
    const QStringList threadsBefore = threadNames();
    const QStringList connectionsBefore = QSqlDatabase::connectionNames();
    for (int round = 0; round < 20; ++round) {
        LoadedPlugin host;
        host.showWindow();
        QCOMPARE(QSqlDatabase::connectionNames().size(), connectionsBefore.size() + 3);
        host.unload();
        QCOMPARE(QSqlDatabase::connectionNames(), connectionsBefore);
    }
    QTRY_COMPARE(threadNames(), threadsBefore);
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void TestPluginLibrary::itCanBeDestroyedDuringAReload()
{
    const auto database = createDatabase();
    for (int round = 0; round < 50; ++round) {
        LoadedPlugin host;
        host.send("run_saved_to_db");
        host.send("run_saved_to_db");
        if (round % 2)
            host.awaitReload();
    }
    QVERIFY(database->tryExec("BEGIN EXCLUSIVE"));
    QVERIFY(database->tryExec("COMMIT"));
}

void TestPluginLibrary::itAnnouncesTheWritesOfItsEnd()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    host.send("remote_service_data", oneRemoteRecord);
    host.unload();
    QCOMPARE(database->rows("SELECT remote_id FROM maintainance"), QStringList("40"));
    const QVector<LoadedPlugin::Message> messages = host.takeMessages();
    QVERIFY(!messages.isEmpty());
    QCOMPARE(messages.last().event, "remote_service_move_to_archive");
    QCOMPARE(messages.last().data.value("idList").toArray(), QJsonArray({40}));
}

void TestPluginLibrary::itAnnouncesNothingThatItGaveUp()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    host.send("run_saved_to_db");
    host.awaitReload();
    const DatabaseLock lock(home().databasePath(), DatabaseLock::Immediate, 60000);
    host.send("remote_service_data", oneRemoteRecord);
    host.unload();
    QVERIFY(lock.isHeld());
    QCOMPARE(LoadedPlugin::names(host.takeMessages()), QStringList());
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 0);
}

void TestPluginLibrary::itsWidgetsSurviveTheHostsWindows_data()
{
    QTest::addColumn<bool>("nested");
    QTest::newRow("directly in a window of the host's") << false;
    QTest::newRow("in a page that the host moved into a window") << true;
}

void TestPluginLibrary::itsWidgetsSurviveTheHostsWindows()
{
    QFETCH(bool, nested);
    const auto database = createDatabase();
    LoadedPlugin host;
    const QPointer<QWidget> window = host.window();
    const QPointer<QWidget> page = host.settingsPage();
    for (int round = 0; round < 3; ++round) {
        auto hostWindow = std::make_unique<QWidget>();
        auto *layout = new QVBoxLayout(hostWindow.get());
        for (QWidget *widget : {window.data(), page.data()}) {
            QWidget *adopted = widget;
            if (nested) {
                adopted = new QWidget;
                auto *inner = new QVBoxLayout(adopted);
                inner->addWidget(widget);
            }
            layout->addWidget(adopted);
        }
        hostWindow->show();
        QVERIFY(QTest::qWaitForWindowExposed(hostWindow.get()));
        host.awaitReload();
        QVERIFY(window->isVisible());
        hostWindow.reset();
        QVERIFY(window);
        QVERIFY(page);
        QVERIFY(!window->parentWidget());
        QVERIFY(!page->parentWidget());
        QVERIFY(!window->isVisible());
    }
    QCOMPARE(host.window(), window.data());
}

void TestPluginLibrary::itAnswersOnWithoutItsWindow()
{
    const auto database = createDatabase();
    LoadedPlugin host;
    delete host.window();
    QVERIFY(host.ask("clicked", {{"key", "show_garage"}}).isEmpty());
    QCOMPARE(LoadedPlugin::names(host.ask("load_complete")),
             QStringList({"read_cars_list", "update_remote_service"}));
    QCOMPARE(LoadedPlugin::names(host.ask("send_settings_dialogs")), QStringList("settings_dialog"));
    for (const char *event : {"cars_list_changed", "personal_list", "run_saved_to_db", "remote_service_data"})
        QVERIFY(host.ask(event).isEmpty());
    QVERIFY(host.ask("car_complain", {{"carId", 1}}).isEmpty());
    QVERIFY(
        host.ask("remote_control_data", {{"msg", "switchCarAvailability"}, {"data", json(R"({"carId": 1})")}})
            .isEmpty());
}

void TestPluginLibrary::itEndsWithAHostThatDoesNotUnload()
{
    const auto database = createDatabase();
    for (int round = 0; round < 5; ++round) {
        database->exec("DELETE FROM maintainance");
        QProcess host;
        host.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        host.start(EXITING_HOST, {"return"});
        QVERIFY(host.waitForFinished(20000));
        QCOMPARE(host.exitStatus(), QProcess::NormalExit);
        QCOMPARE(host.exitCode(), 0);
        QCOMPARE(database->rows("SELECT remote_id FROM maintainance"), QStringList("40"));
    }
}

GARAGE_TEST(TestPluginLibrary)
#include "tst_pluginlibrary.moc"
