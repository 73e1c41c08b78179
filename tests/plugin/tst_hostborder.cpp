#include "data/qtcompatibility.h"
#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/json.h"
#include "support/loadedplugin.h"
#include "support/userinput.h"

#include <QApplication>
#include <QDirIterator>
#include <QLineEdit>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStyle>
#include <QTreeView>

#include <dlfcn.h>

#include <clocale>

namespace {

const QJsonObject oneRemoteRecord {
    {"data", R"([{"id": 40, "carId": 1, "opId": 3, "opDoneDateTime": "2026-03-01T10:00:00.000Z"}])"}};

/// Lets the module write each kind of row: a remote record, a complaint, the name of an operation.
void writeEverything(LoadedPlugin &host)
{
    host.showWindow();
    host.send("cars_list_changed", json(R"({"cars": [{"id": 1, "num": "10", "name": "Sodi"}]})"));
    host.awaitReload();
    host.send("remote_service_data", oneRemoteRecord);
    host.awaitReload();
    onNextDialog(QDialogButtonBox::Ok);
    host.send("car_complain", {{"carId", 1}});
    QVERIFY(allDialogsAnswered());
    host.awaitReload();
    auto *operations = child<QTreeView>(*host.settingsPage(), "tvServiceOperations")->model();
    QVERIFY(operations->setData(operations->index(0, 1), "Смазка"));
}

QStringList filesIn(const QString &folder)
{
    QStringList files;
    QDirIterator iterator(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (iterator.hasNext())
        files.append(iterator.next());
    files.sort();
    return files;
}

/// What a library could change in the process of its host.
QStringList stateOfTheProcess()
{
    return QStringList {std::setlocale(LC_ALL, nullptr),
                        QLocale().name(),
                        QDir::currentPath(),
                        QApplication::applicationName(),
                        QApplication::organizationName(),
                        QApplication::style()->objectName(),
                        qApp->styleSheet(),
                        QApplication::font().toString(),
                        QApplication::palette().color(QPalette::Highlight).name(),
                        QVariant(QApplication::quitOnLastWindowClosed()).toString()}
    + QProcessEnvironment::systemEnvironment().toStringList();
}

} // namespace

/// What host and module owe each other, as far as no other class tests it.
class TestHostBorder final : public DatabaseTest
{
    Q_OBJECT
private slots:
    void init();
    void theHostsTablesAreOnlyRead();
    void noFileButTheDatabaseIsMade();
    void noMessageWaitsLongForALockedFile_data();
    void noMessageWaitsLongForALockedFile();
    void allMessagesArriveInTheGuiThread();
    void theStateOfTheProcessStaysAsItIs();
    void itUsesThreeNamedConnections();
    void anotherIdentifierIsNotItsInterface();
    void itExportsItsEntryPointsOnly();
    void itStaysMappedAfterItsLastHandleIsClosed();
};

void TestHostBorder::init()
{
    DatabaseTest::init();
    database->addCar(1, "10", "Sodi");
    database->addOperation(3, "Масло");
    database->addLap(1, 1, "2026-03-01T12:00:00.000Z", 60000);
}

void TestHostBorder::theHostsTablesAreOnlyRead()
{
    database->exec("CREATE TABLE writes (name TEXT)");
    for (const char *table : {"cars", "personal", "laps"}) {
        for (const char *write : {"INSERT", "UPDATE", "DELETE"})
            database->exec(QString("CREATE TRIGGER %1_%2 BEFORE %2 ON %1 BEGIN INSERT INTO writes VALUES "
                                   "('%1 %2'); END")
                               .arg(table, write));
    }
    const QStringList schema = database->rows("SELECT type, name, sql FROM sqlite_master");
    {
        LoadedPlugin host;
        writeEverything(host);
    }
    QCOMPARE(database->rows("SELECT * FROM writes"), QStringList());
    QCOMPARE(database->rows("SELECT type, name, sql FROM sqlite_master"), schema);
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 2);
    QCOMPARE(database->value("SELECT operation_name FROM service_operations").toString(), "Смазка");
}

void TestHostBorder::noFileButTheDatabaseIsMade()
{
    const QStringList files = filesIn(home().path());
    {
        LoadedPlugin host;
        writeEverything(host);
    }
    QCOMPARE(filesIn(home().path()), files);
}

void TestHostBorder::noMessageWaitsLongForALockedFile_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<QJsonObject>("data");
    QTest::addColumn<int>("longestMs");
    constexpr int atOnce = 1000;
    constexpr int driversTimeout = 5000 + atOnce; // the settings page reads the kart models
    QTest::newRow("load_complete") << "load_complete" << QJsonObject() << atOnce;
    QTest::newRow("cars_list_changed")
        << "cars_list_changed" << json(R"({"cars": [{"id": 1}]})") << driversTimeout;
    QTest::newRow("run_saved_to_db") << "run_saved_to_db" << QJsonObject() << atOnce;
    QTest::newRow("send_settings_dialogs") << "send_settings_dialogs" << QJsonObject() << atOnce;
    QTest::newRow("remote_service_data") << "remote_service_data" << oneRemoteRecord << atOnce;
    QTest::newRow("remote_control_data")
        << "remote_control_data" << json(R"({"msg": "switchCarAvailability", "data": {"carId": 1}})")
        << atOnce;
}

void TestHostBorder::noMessageWaitsLongForALockedFile()
{
    QFETCH(QString, event);
    QFETCH(QJsonObject, data);
    QFETCH(int, longestMs);
    LoadedPlugin host;
    host.showWindow();
    const DatabaseLock lock(home().databasePath(), DatabaseLock::Exclusive, 60000);
    QElapsedTimer timer;
    timer.start();
    host.send(qPrintable(event), data);
    QVERIFY2(timer.elapsed() < longestMs, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(lock.isHeld());
}

void TestHostBorder::allMessagesArriveInTheGuiThread()
{
    LoadedPlugin host;
    int messages = 0;
    int strayMessages = 0;
    connect(
        host.plugin(), &TrivexPluginInterface::pluginSignal, host.plugin(),
        [&] {
            ++messages;
            strayMessages += QThread::currentThread() != qApp->thread();
        },
        Qt::DirectConnection);
    host.send("load_complete");
    writeEverything(host);
    QVERIFY(messages > 5);
    QCOMPARE(strayMessages, 0);
}

void TestHostBorder::theStateOfTheProcessStaysAsItIs()
{
    const QStringList state = stateOfTheProcess();
    {
        LoadedPlugin host;
        writeEverything(host);
        QCOMPARE(stateOfTheProcess(), state);
    }
    QCOMPARE(stateOfTheProcess(), state);
}

void TestHostBorder::itUsesThreeNamedConnections()
{
    const QStringList others = QSqlDatabase::connectionNames();
    LoadedPlugin host;
    host.showWindow();
    QStringList names = QSqlDatabase::connectionNames();
    for (const QString &name : others)
        names.removeOne(name);
    names.sort();
    QCOMPARE(names, QStringList({"garageSettingsDb", "garageStatsLoader", "maintainanceDbReader"}));
}

void TestHostBorder::anotherIdentifierIsNotItsInterface()
{
    LoadedPlugin host;
    QVERIFY(host.plugin()->qt_metacast(TRIVEX_PLUGIN_IID));
    QVERIFY(!host.plugin()->qt_metacast("another.TrivexPluginInterface/v1.0"));
}

void TestHostBorder::itExportsItsEntryPointsOnly()
{
    QProcess nm;
    nm.start("nm", {"--dynamic", "--defined-only", "--format=just-symbols", GARAGE_PLUGIN_FILE});
    if (!nm.waitForStarted())
        QSKIP("nm is not installed");
    QVERIFY(nm.waitForFinished());
    QStringList symbols = QString::fromLatin1(nm.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    symbols.sort();
    QCOMPARE(symbols, QStringList({"qt_plugin_instance", QtCompatibility::metadataEntryPoint}));
}

void TestHostBorder::itStaysMappedAfterItsLastHandleIsClosed()
{
    // Nothing else in this program holds a copy.
    const QByteArray copy = QFile::encodeName(home().path() + "/copy.so");
    QVERIFY(QFile::copy(GARAGE_PLUGIN_FILE, QFile::decodeName(copy)));
    void *library = dlopen(copy.constData(), RTLD_NOW | RTLD_LOCAL);
    QVERIFY(library);
    QCOMPARE(dlclose(library), 0);
    QVERIFY(dlopen(copy.constData(), RTLD_NOW | RTLD_NOLOAD));
}

GARAGE_TEST(TestHostBorder)
#include "tst_hostborder.moc"
