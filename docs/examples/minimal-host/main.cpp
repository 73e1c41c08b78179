// A host in its smallest form: one kart, one operation with a limit of two laps, three laps driven since.
// Prints what is due as soon as the module has computed it; stays open on a desktop, ends without one.

#include <trivexplugininterface.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QPluginLoader>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTextStream>

namespace {

// The module opens this very file. Its tables must exist before the module is loaded.
bool prepareDatabase()
{
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + "/Ruvalo-QT/DB";
    const QString file = folder + "/ruvalo.sqlite";
    if (QFile::exists(file))
        return true; // never change existing data
    QFile schema(GARAGE_SCHEMA);
    if (!QDir().mkpath(folder) || !schema.open(QIODevice::ReadOnly))
        return false;
    QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE");
    database.setDatabaseName(file);
    if (!database.open())
        return false;
    QString statements = QString::fromUtf8(schema.readAll()).remove(QRegularExpression("--[^\n]*"));
    statements += "INSERT INTO cars VALUES (101, '7', 'Kart 270');"
                  "INSERT INTO service_operations VALUES (1, 'Chain');"
                  "INSERT INTO service_reglament VALUES ('Kart 270', 1, 0, 0, 2);"
                  "INSERT INTO maintainance (car_id, operation_id, operation_time, operation_state)"
                  " VALUES (101, 1, '2026-03-01T10:00:00.000Z', 1);"
                  "INSERT INTO laps VALUES (1, 101, 1, '2026-03-01T10:01:00.000Z', 60000),"
                  " (2, 101, 1, '2026-03-01T10:02:00.000Z', 60000),"
                  " (3, 101, 1, '2026-03-01T10:03:00.000Z', 60000)";
    for (const QString &statement : statements.split(';', Qt::SkipEmptyParts)) {
        QSqlQuery query(database);
        if (!statement.trimmed().isEmpty() && !query.exec(statement))
            return false;
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (!prepareDatabase())
        qFatal("the database cannot be made");

    QPluginLoader loader(GARAGE_PLUGIN);
    auto *garage = qobject_cast<TrivexPluginInterface *>(loader.instance());
    if (!garage)
        qFatal("%s", qPrintable(loader.errorString()));

    QTabWidget tabs;
    QObject::connect(garage, &TrivexPluginInterface::pluginSignal, &tabs, [&](auto, auto event, auto data) {
        if (event == "read_cars_list") {
            const QJsonObject car {
                {"id", 101}, {"num", "7"}, {"name", "Kart 270"}, {"available_for_runs", true}};
            garage->pluginSlot("host", "cars_list_changed", {{"cars", QJsonArray {car}}});
        } else if (event == "insert_tab") {
            const auto address = data["tabWidget"].toVariant().toLongLong(); // 64 bits: never toInt()
            tabs.addTab(reinterpret_cast<QWidget *>(address), data["tabCaption"].toString());
            tabs.setCurrentWidget(reinterpret_cast<QWidget *>(address));
        } else if (event == "close_tab") {
            const auto address = data["tabWidget"].toVariant().toLongLong();
            tabs.removeTab(tabs.indexOf(reinterpret_cast<QWidget *>(address))); // keeps the window
        } else if (event == "update_remote_service") {
            garage->pluginSlot("host", "remote_service_data", {{"data", "[]"}}); // no remote side
        } else if (event == "update_pending_service") {
            QTextStream out(stdout);
            for (const QJsonValue &due : data["servicePendingList"].toArray())
                out << "due: " << due["carNum"].toString() << ' ' << due["opName"].toString() << Qt::endl;
            if (QGuiApplication::platformName() == "offscreen")
                QApplication::quit();
        }
    });
    garage->pluginSlot("host", "load_complete", {});
    garage->pluginSlot("host", "personal_list", {{"personalList", QJsonArray()}});
    garage->pluginSlot("host", "clicked", {{"key", "show_garage"}});
    tabs.resize(900, 600);
    tabs.show();
    const int result = QApplication::exec();
    loader.unload(); // writes what is still to be written; takes the window out of the tabs
    return result;
}
