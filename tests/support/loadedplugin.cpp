#include "support/loadedplugin.h"

#include <QtTest>

#include <QFile>

namespace {

/// Appends the message to a file of the folder in GARAGE_TRAFFIC_FOLDER, one line per message.
void record(const HostMessage &message)
{
    static const QString folder = qEnvironmentVariable("GARAGE_TRAFFIC_FOLDER");
    if (folder.isEmpty())
        return;
    static QFile file(folder + '/' + QCoreApplication::applicationName() + ".jsonl");
    if (!file.isOpen() && !file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        qFatal("%s", qPrintable(file.errorString()));
    file.write(message.toJsonLine() + '\n');
    file.flush();
}

} // namespace

LoadedPlugin::LoadedPlugin()
{
    if (const Result result = m_host.load(GARAGE_PLUGIN_FILE); !result)
        qFatal("%s", qPrintable(result.errorText()));
    connect(&m_host, &PluginHost::received, this, [this](const HostMessage &message) {
        messages.append(message);
        record(message);
        if (message.event == "update_pending_service")
            ++m_reloads;
    });
}

void LoadedPlugin::unload()
{
    if (const Result result = m_host.unload(); !result)
        qFatal("%s", qPrintable(result.errorText()));
}

void LoadedPlugin::send(const char *event, const QJsonObject &data, const char *module)
{
    m_host.send(HostMessage {module, event, data});
}

QVector<LoadedPlugin::Message> LoadedPlugin::ask(const char *event, const QJsonObject &data)
{
    takeMessages();
    send(event, data);
    return takeMessages();
}

QVector<LoadedPlugin::Message> LoadedPlugin::awaitReload()
{
    ++m_awaitedReloads;
    if (!QTest::qWaitFor([this] { return m_reloads >= m_awaitedReloads; }, 60000))
        QTest::qFail("No reload came", __FILE__, __LINE__);
    // The records follow the message.
    QCoreApplication::processEvents();
    return takeMessages();
}

bool LoadedPlugin::noFurtherReload()
{
    return !QTest::qWaitFor([this] { return m_reloads > m_awaitedReloads; }, 150);
}

QVector<LoadedPlugin::Message> LoadedPlugin::takeMessages()
{
    QVector<Message> taken;
    taken.swap(messages);
    return taken;
}

QWidget *LoadedPlugin::widgetFromAnswer(const char *event, const QJsonObject &data, const char *key)
{
    const QVector<Message> answer = ask(event, data);
    return answer.isEmpty() ? nullptr : answer.first().widget(QLatin1String(key));
}

QWidget *LoadedPlugin::window()
{
    return widgetFromAnswer("clicked", {{"key", "show_garage"}}, "tabWidget");
}

QWidget *LoadedPlugin::settingsPage()
{
    return widgetFromAnswer("send_settings_dialogs", {}, "settingsPagePtr");
}

void LoadedPlugin::showWindow()
{
    QWidget *widget = window();
    widget->show();
    if (!QTest::qWaitForWindowExposed(widget->window()))
        QTest::qFail("The window did not appear", __FILE__, __LINE__);
    awaitReload();
}

QStringList LoadedPlugin::names(const QVector<Message> &messages)
{
    QStringList names;
    for (const Message &message : messages)
        names.append(message.event);
    return names;
}
