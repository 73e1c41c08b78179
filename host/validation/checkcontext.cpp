#include "host/validation/checkcontext.h"

#include "host/database/hostconnection.h"
#include "host/database/hostdatabase.h"
#include "host/database/hosttransaction.h"
#include "trivexplugininterface.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QJsonDocument>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int longestAnswer = 15000; // milliseconds

QStringList eventsOf(const QVector<HostMessage> &messages)
{
    QStringList events;
    for (const HostMessage &message : messages)
        events.append(message.event);
    return events;
}

QString listed(const QStringList &events)
{
    return events.isEmpty() ? CheckContext::tr("nothing") : events.join(QLatin1String(", "));
}

QString jsonText(const QJsonValue &value)
{
    // QJsonDocument holds arrays and objects only: the value is wrapped in an array, whose brackets are
    // removed.
    const QByteArray text = QJsonDocument(QJsonArray {value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(text.mid(1, text.size() - 2));
}

} // namespace

void expect(bool holds, const QString &reason)
{
    if (!holds)
        throw CheckFailed {reason};
}

void expectEqual(const QString &what, const QJsonValue &actual, const QJsonValue &expected)
{
    expect(actual == expected,
           CheckContext::tr("%1 is %2 instead of %3").arg(what, jsonText(actual), jsonText(expected)));
}

void expectEvents(const QVector<HostMessage> &messages, const QStringList &events)
{
    const QStringList actual = eventsOf(messages);
    expect(actual == events,
           CheckContext::tr("it sent %1 instead of %2").arg(listed(actual), listed(events)));
}

void expectMessage(const HostMessage &message, const QString &module, const QJsonObject &data)
{
    expectEqual(CheckContext::tr("the module of \"%1\"").arg(message.event), message.module, module);
    expectEqual(CheckContext::tr("the data of \"%1\"").arg(message.event), message.data, data);
}

QJsonObject jsonObject(const char *text)
{
    QJsonParseError error {};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject())
        qFatal("Not a JSON object: %s (%s)", text, qPrintable(error.errorString()));
    return document.object();
}

QJsonObject remoteRecords(const char *arrayText)
{
    return {{QStringLiteral("data"), QString::fromUtf8(arrayText)}};
}

CheckContext::CheckContext(const QString &library, const DataFolder &folder)
    : m_library(library), m_folder(folder)
{
    connect(&m_plugin, &PluginHost::received, this,
            [this](const HostMessage &message) { m_messages.append(message); });
}

CheckContext::~CheckContext() = default;

void CheckContext::makeDatabase()
{
    if (const Result result = HostDatabase::createTables(m_folder); !result)
        throw CheckSkipped {tr("the scratch database cannot be made: %1").arg(result.errorText())};
    m_database = std::make_unique<HostConnection>(m_folder.databasePath());
    HostTransaction transaction(*m_database);
    for (const char *statement :
         {"INSERT INTO cars (id,num,name) VALUES (1,'7','Вихрь'),(2,'8','Вихрь')",
          "INSERT INTO personal (id,last_name,first_name,mid_name) VALUES (11,'Иванов','Пётр','Сергеевич')",
          "INSERT INTO service_operations (id,operation_name) VALUES (1,'Замена масла')",
          "INSERT INTO service_reglament (model,operation_id,time_limit,runs_limit,laps_limit) VALUES "
          "('Вихрь',1,0,0,10)",
          "INSERT INTO maintainance (id,car_id,operation_id,operation_time,person_id,person_name,comment,"
          "operation_state) VALUES (1,1,1,'2026-01-01T10:00:00.000Z',11,'','',1),"
          "(2,2,1,'2026-01-01T10:00:00.000Z',11,'','',1),(3,2,-1,'2026-01-02T10:00:00.000Z',-1,'','стук',0)"})
        exec(QString::fromUtf8(statement));
    // One lap more than the limit for car 1, just the limit for car 2; a lap without a time does not count.
    for (int lap = 0; lap < 22; ++lap) {
        const int car = lap < 12 ? 1 : 2;
        exec(QStringLiteral("INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) VALUES (?,?,?,?)"),
             {car, 1 + lap % 2, QStringLiteral("2026-01-03T10:%1:00.000Z").arg(10 + lap),
              lap == 11 ? 0 : 30500});
    }
    expect(transaction.commit(), m_database->errorText());
}

void CheckContext::exec(const QString &statement, const QVariantList &values)
{
    if (!m_database->exec(statement, values))
        throw CheckSkipped {tr("the scratch database: %1").arg(m_database->errorText())};
}

int CheckContext::count(const QString &table, const QString &condition)
{
    return m_database
        ->value(QLatin1String("SELECT count(*) FROM ") + table + QLatin1String(" WHERE ") + condition)
        .toInt();
}

void CheckContext::load()
{
    const Result result = m_plugin.load(m_library);
    expect(result.isOk(), result.errorText());
}

void CheckContext::unload()
{
    const Result result = m_plugin.unload();
    expect(result.isOk(), result.errorText());
}

TrivexPluginInterface &CheckContext::plugin()
{
    return *m_plugin.plugin();
}

void CheckContext::send(const QString &event, const QJsonObject &data)
{
    m_plugin.send(event, data);
}

QVector<HostMessage> CheckContext::ask(const QString &event, const QJsonObject &data)
{
    const int before = int(m_messages.size());
    send(event, data);
    const QVector<HostMessage> answer = m_messages.mid(before);
    m_messages.resize(before);
    return answer;
}

HostMessage CheckContext::await(const QString &event)
{
    const QDeadlineTimer deadline(longestAnswer);
    for (;;) {
        const int at = int(eventsOf(m_messages).indexOf(event));
        if (at >= 0) {
            HostMessage message = m_messages.at(at);
            m_messages.remove(0, at + 1);
            return message;
        }
        expect(!deadline.hasExpired(),
               tr("\"%1\" did not come within %2 s").arg(event).arg(longestAnswer / 1000));
        wait(5);
    }
}

void CheckContext::wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void CheckContext::expectSilence(int milliseconds)
{
    wait(milliseconds);
    expect(m_messages.isEmpty(), tr("it sent %1 without a request").arg(listed(eventsOf(m_messages))));
}

QWidget &CheckContext::widget(const HostMessage &message, const char *key)
{
    QWidget *widget = message.widget(QLatin1String(key));
    expect(QApplication::allWidgets().contains(widget),
           tr("%1 is not the address of a widget").arg(jsonText(message.data.value(QLatin1String(key)))));
    return *widget;
}

QWidget &CheckContext::garageWindow()
{
    const QVector<HostMessage> answer =
        ask(QStringLiteral("clicked"), {{QStringLiteral("key"), QStringLiteral("show_garage")}});
    expectEvents(answer, {QStringLiteral("insert_tab")});
    return widget(answer.first(), "tabWidget");
}
