// A host that does everything as the guide says, but for the one fault that the first argument names.

#include "trivexplugininterface.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QPluginLoader>
#include <QPointer>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

#include <cstdlib>
#include <memory>
#include <thread>

namespace {

constexpr int sessionLength = 700; // milliseconds; more than hostcheck allows for an answer at the end

QString theFault;

bool hasFault(const char *name)
{
    return theFault == name;
}

QString schemaText()
{
    QFile file(GARAGE_SCHEMA);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no schema");
    QString schema = QString::fromUtf8(file.readAll()).remove(QRegularExpression("--[^\n]*"));
    if (hasFault("no-table"))
        schema.replace("CREATE TABLE personal (", "CREATE TABLE people (");
    if (hasFault("no-column"))
        schema.replace("mid_name", "middle_name");
    if (hasFault("no-autoincrement"))
        schema.remove("AUTOINCREMENT");
    if (hasFault("no-limits-key"))
        schema.remove(QRegularExpression(",\\s*PRIMARY KEY \\(model, operation_id\\)"));
    if (hasFault("no-state-default"))
        schema.remove("DEFAULT 1");
    if (hasFault("no-index"))
        schema.remove(QRegularExpression("CREATE INDEX[^;]*;"));
    return schema;
}

void makeDatabase()
{
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + "/Ruvalo-QT/DB";
    QDir().mkpath(folder);
    QSqlDatabase database =
        QSqlDatabase::addDatabase("QSQLITE", hasFault("connection-name") ? "garageSettingsDb" : "wronghost");
    database.setDatabaseName(folder + "/ruvalo.sqlite");
    if (!database.open())
        qFatal("no database");
    QString statements = schemaText();
    statements += hasFault("lap-number") ? "INSERT INTO laps VALUES (1, 101, 1, 1772359260000, 60000);"
        : hasFault("lap-space") ? "INSERT INTO laps VALUES (1, 101, 1, '2026-03-01 10:01:00', 60000);"
                                : "INSERT INTO laps VALUES (1, 101, 1, '2026-03-01T10:01:00.000Z', 60000);";
    if (!hasFault("no-wal"))
        QSqlQuery(database).exec("PRAGMA journal_mode=WAL");
    for (const QString &statement : statements.split(';', Qt::SkipEmptyParts)) {
        QSqlQuery query(database);
        if (!statement.trimmed().isEmpty() && !query.exec(statement))
            qFatal("%s", qPrintable(statement));
    }
}

class Host final : public QObject
{
public:
    explicit Host(TrivexPluginInterface *plugin) : m_plugin(plugin) { }
    void start();

private:
    void receiveMessages();
    void send(const QString &event, const QJsonObject &data = {});
    void sendCars();
    void use();
    void handle(const QString &event, const QJsonObject &data);
    void insertTab(QWidget *window);
    void closeTab(QWidget *window);
    void showPage(QWidget *page);

    TrivexPluginInterface *m_plugin;
    QTabWidget m_tabs;
    QTabWidget m_settings;
};

void Host::start()
{
    m_tabs.addTab(new QWidget, "Track");
    m_tabs.show();
    if (!hasFault("not-connected"))
        receiveMessages();
    if (hasFault("order")) {
        send("personal_list", {{"personalList", QJsonArray()}});
        send("clicked", {{"key", "show_garage"}});
    }
    if (!hasFault("no-load-complete"))
        send("load_complete");
    if (hasFault("load-complete-twice"))
        send("load_complete");
    if (hasFault("not-connected"))
        receiveMessages();
    const QJsonObject person {
        {"id", 11}, {"lastName", "Ivanov"}, {"firstName", "Pyotr"}, {"midName", "Sergeyevich"}};
    if (!hasFault("no-people"))
        send("personal_list", {{"personalList", QJsonArray {person}}});
    sendCars();
    use();
}

void Host::use()
{
    send("clicked", {{"key", "show_garage"}});
    send("send_settings_dialogs");
    send("run_saved_to_db");
    if (hasFault("thread"))
        std::thread([this] { send("run_closed"); }).join();
    else if (!hasFault("no-run-closed"))
        send("run_closed");
    send("remote_control_data",
         {{"msg", "switchCarAvailability"}, {"data", QJsonObject {{"carId", 101}}}, {"sinkId", 7}});
    send("car_complain", {{"carId", hasFault("unknown-car") ? 999 : 101}});
    if (hasFault("unknown-event"))
        send("run_saved");
    if (hasFault("bad-text"))
        send("remote_service_data", {{"data", "[{\"id\":1"}});
    if (hasFault("bad-record"))
        send("remote_service_data", {{"data", "[{\"id\":1,\"carId\":101,\"opId\":1,\"opDoneDateTime\":5}]"}});
    if (hasFault("long-id")) // not a fault
        send("remote_service_data",
             {{"data",
               "[{\"id\":9007199254740993,\"carId\":101,\"opId\":1,\"opDoneDateTime\":\"2026-03-01T10:00:00."
               "000Z\"}]"}});
}

void Host::receiveMessages()
{
    connect(m_plugin, &TrivexPluginInterface::pluginSignal, this,
            [this](const QString &, const QString &event, const QJsonObject &data) { handle(event, data); });
}

void Host::send(const QString &event, const QJsonObject &data)
{
    m_plugin->pluginSlot("host", event, data);
}

void Host::sendCars()
{
    QJsonObject car {{"id", 101}, {"num", "7"}, {"name", "Kart 270"}, {"available_for_runs", true}};
    if (hasFault("wrong-type"))
        car["num"] = 7;
    if (hasFault("no-key"))
        car.remove("name");
    if (!hasFault("no-cars"))
        send("cars_list_changed", {{"cars", QJsonArray {car}}});
}

void Host::handle(const QString &event, const QJsonObject &data)
{
    const auto widget = [&data](const char *key) {
        return reinterpret_cast<QWidget *>(data[QLatin1String(key)].toVariant().toLongLong());
    };
    if (event == "read_cars_list")
        sendCars();
    else if (event == "update_cars" && !hasFault("no-availability"))
        sendCars();
    else if (event == "update_remote_service" && !hasFault("no-records"))
        send("remote_service_data", {{"data", "[]"}});
    else if (event == "insert_tab")
        insertTab(widget("tabWidget"));
    else if (event == "close_tab")
        closeTab(widget("tabWidget"));
    else if (event == "settings_dialog")
        showPage(widget("settingsPagePtr"));
}

void Host::insertTab(QWidget *window)
{
    if (hasFault("crash-in-insert-tab"))
        std::_Exit(1); // as if an address had been cut to 32 bits
    if (hasFault("delete-on-close"))
        window->setAttribute(Qt::WA_DeleteOnClose);
    auto *table = window->findChild<QTableWidget *>();
    if (hasFault("taken-apart") && table)
        table->setParent(&m_tabs);
    m_tabs.addTab(window, "Garage");
    if (!hasFault("tab-not-shown"))
        m_tabs.setCurrentWidget(window);
}

void Host::closeTab(QWidget *window)
{
    if (hasFault("window-deleted"))
        delete window;
    else if (!hasFault("tab-not-closed"))
        m_tabs.removeTab(m_tabs.indexOf(window));
}

void Host::showPage(QWidget *page)
{
    m_settings.addTab(page, "Garage");
    if (hasFault("page-deleted"))
        delete page;
}

int runWithoutApplication()
{
    QPluginLoader loader(HOSTCHECK);
    return loader.instance() && loader.unload() ? 0 : 1;
}

int runInOtherThread(int argc, char **argv)
{
    const QApplication application(argc, argv);
    makeDatabase();
    QPluginLoader loader(HOSTCHECK);
    std::thread([&loader] { loader.instance(); }).join();
    return loader.unload() ? 0 : 1;
}

int run(int argc, char **argv)
{
    auto application = std::make_unique<QApplication>(argc, argv);
    if (!hasFault("late-database") && !hasFault("database-exists"))
        makeDatabase();
    QPluginLoader loader(HOSTCHECK);
    QObject *root = loader.instance();
    if (!root)
        qFatal("%s", qPrintable(loader.errorString()));
    if (hasFault("late-database"))
        makeDatabase();
    auto *plugin = hasFault("not-cast") ? static_cast<TrivexPluginInterface *>(root)
                                        : qobject_cast<TrivexPluginInterface *>(root);
    {
        Host host(plugin);
        QTimer::singleShot(0, &host, &Host::start);
        QTimer::singleShot(sessionLength, application.get(), &QApplication::quit);
        QApplication::exec();
    }
    if (hasFault("never-unloaded"))
        return 0;
    if (hasFault("unloaded-late"))
        application.reset();
    return loader.unload() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    theFault = argc > 1 ? argv[1] : "";
    if (hasFault("no-application"))
        return runWithoutApplication();
    if (hasFault("other-thread"))
        return runInOtherThread(argc, argv);
    return run(argc, argv);
}
