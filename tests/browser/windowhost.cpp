// The demo host with its window and its web server, driven by a test: each line of standard input is a
// command
// {"do": …}, answered by one line. Ends with standard input.

#include "browser/eventtimes.h"
#include "support/userinput.h"

#include "host/app/demohost.h"
#include "host/app/hostwindow.h"
#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"
#include "host/terminal/console.h"
#include "host/terminal/messagehandler.h"
#include "host/terminal/standardinputreader.h"

#include <QAbstractButton>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTabWidget>
#include <QTreeView>
#include <QUrl>

namespace {

constexpr char numberTitle[] = "Номер";

int columnOf(const QAbstractItemModel &model, const QString &title)
{
    for (int column = 0; column < model.columnCount(); ++column) {
        if (model.headerData(column, Qt::Horizontal).toString() == title)
            return column;
    }
    return -1;
}

/// The cell with the kart's number, or an invalid index.
QModelIndex kartIn(const QAbstractItemModel &model, const QString &number)
{
    const int column = columnOf(model, numberTitle);
    for (int row = 0; row < model.rowCount(); ++row) {
        if (model.index(row, column).data().toString() == number)
            return model.index(row, column);
    }
    return {};
}

/// Answers the commands of a test.
class Commands final
{
public:
    Commands(DemoHost &host, HostWindow &window, EventTimes &times)
        : m_host(host), m_window(window), m_times(times)
    {
        m_access.endpoint.port = 0; // a free one
    }

    /// Later calls take the same port again.
    QJsonObject serve()
    {
        if (const Result result = m_host.web().start(m_access); !result)
            return {{"error", result.errorText()}};
        m_access.endpoint.port = quint16(QUrl(m_host.web().url()).port());
        return {{"url", m_host.web().url()}};
    }

    QJsonObject answer(const QJsonObject &command)
    {
        const QString name = command.value("do").toString();
        if (name == "rows")
            return rows(command);
        if (name == "press kart")
            return pressKart(command);
        if (name == "tab")
            return showTab(command);
        if (name == "send")
            return send(command);
        if (name == "drive")
            return drive(command);
        if (name == "serve")
            return serve();
        if (name == "stop serving")
            return stopServing();
        if (name == "times")
            return times();
        if (name == "grab")
            return {{"saved", m_window.grab().save(command.value("file").toString())}};
        return {{"error", "unknown command"}};
    }

private:
    /// What a table of the garage window shows.
    QJsonObject rows(const QJsonObject &command)
    {
        const auto *view = child<QTreeView>(m_window, command.value("view").toString().toUtf8());
        return {{"rows", QJsonArray::fromStringList(rowTexts(*view->model()))},
                {"visible", view->isVisible()}};
    }

    /// Selects a kart in a list of the garage window and presses a button.
    QJsonObject pressKart(const QJsonObject &command)
    {
        auto *view = child<QTreeView>(m_window, command.value("view").toString().toUtf8());
        const QModelIndex kart = kartIn(*view->model(), command.value("kart").toString());
        if (!kart.isValid())
            return {{"error", "no such kart"}};
        click(view, kart);
        press(child<QAbstractButton>(m_window, command.value("button").toString().toUtf8()));
        return {};
    }

    QJsonObject showTab(const QJsonObject &command)
    {
        auto *tabs = child<QTabWidget>(m_window, "tabWidget");
        tabs->setCurrentWidget(child<QWidget>(*tabs, command.value("page").toString().toUtf8()));
        return {};
    }

    QJsonObject send(const QJsonObject &command)
    {
        m_host.plugin().send(command.value("event").toString(), command.value("data").toObject());
        return {};
    }

    QJsonObject stopServing()
    {
        m_host.web().stop();
        return {};
    }

    /// A speed of 0 stops.
    QJsonObject drive(const QJsonObject &command)
    {
        const int speed = command.value("speed").toInt();
        if (speed > 0)
            m_host.track().setSpeed(speed);
        m_host.track().setLive(speed > 0);
        return {{"laps", m_host.track().savedLaps()}};
    }

    QJsonObject times()
    {
        QJsonObject byClass;
        const auto taken = m_times.take();
        for (auto it = taken.begin(); it != taken.end(); ++it)
            byClass.insert(QString::fromLatin1(it.key()),
                           QJsonObject {{"events", it->events},
                                        {"longest_ms", double(it->longest) / 1e6},
                                        {"work_ms", double(it->longestWork) / 1e6}});
        return {{"times", byClass}};
    }

    DemoHost &m_host;
    HostWindow &m_window;
    EventTimes &m_times;
    WebAccess m_access;
};

void writeLine(const QJsonObject &object)
{
    Console::writeLine(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
}

} // namespace

int main(int argc, char **argv)
{
    const QStringList arguments(argv + 1, argv + argc);
    const DataFolder folder = DataFolder::own(arguments.value(0));
    MessageHandler::install(folder.logPath(), false);
    folder.applyToEnvironment();
    EventTimes application(argc, argv);
    if (!HostDatabase::prepare(folder))
        qFatal("no database");
    DemoHost host(folder, 1);
    if (!host.plugin().load(GARAGE_PLUGIN))
        qFatal("no plug-in");
    HostWindow window(host, folder);
    window.start();
    window.openGarage();

    application.addOwner(host.web());
    application.addOwner(host.remote());
    application.addOwner(host.track());
    Commands commands(host, window, application);
    writeLine(commands.serve());
    StandardInputReader input;
    QObject::connect(&input, &StandardInputReader::line, &application, [&](const QByteArray &line) {
        writeLine(commands.answer(QJsonDocument::fromJson(line).object()));
    });
    QObject::connect(&input, &StandardInputReader::ended, &application, &QCoreApplication::quit);
    return QApplication::exec();
}
