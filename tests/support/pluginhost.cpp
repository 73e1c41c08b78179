#include "support/pluginhost.h"

#include <QtTest>

#include <QFile>
#include <QJsonDocument>

namespace {

/// Keeps what the module says, a line a message, where the run asks for it.
void keep(const QString &module, const QString &event, const QJsonObject &data)
{
    static const QString folder = qEnvironmentVariable("GARAGE_TRAFFIC_FOLDER");
    if (folder.isEmpty())
        return;
    static QFile file(folder + '/' + QCoreApplication::applicationName() + ".jsonl");
    if (!file.isOpen() && !file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        qFatal("%s", qPrintable(file.errorString()));
    const QJsonObject line {{"module", module}, {"event", event}, {"data", data}};
    file.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
    file.flush();
}

} // namespace

PluginHost::PluginHost() : m_loader(GARAGE_PLUGIN_FILE)
{
    m_plugin = qobject_cast<TrivexPluginInterface *>(m_loader.instance());
    if (!m_plugin)
        qFatal("%s", qPrintable(m_loader.errorString()));
    connect(m_plugin, &TrivexPluginInterface::pluginSignal, this,
            [this](const QString &module, const QString &event, const QJsonObject &data) {
                messages.append({module, event, data});
                keep(module, event, data);
                if (event == "update_pending_service")
                    ++m_reloads;
            });
}

PluginHost::~PluginHost()
{
    unload();
}

void PluginHost::unload()
{
    if (!m_plugin)
        return;
    m_plugin = nullptr;
    if (!m_loader.unload())
        qFatal("%s", qPrintable(m_loader.errorString()));
}

void PluginHost::send(const char *event, const QJsonObject &data, const char *module)
{
    m_plugin->pluginSlot(QLatin1String(module), QLatin1String(event), data);
}

QVector<PluginHost::Message> PluginHost::ask(const char *event, const QJsonObject &data)
{
    takeMessages();
    send(event, data);
    return takeMessages();
}

QVector<PluginHost::Message> PluginHost::awaitReload()
{
    ++m_awaitedReloads;
    if (!QTest::qWaitFor([this] { return m_reloads >= m_awaitedReloads; }, 60000))
        QTest::qFail("No reload came", __FILE__, __LINE__);
    // The records follow the message.
    QCoreApplication::processEvents();
    return takeMessages();
}

bool PluginHost::noFurtherReload()
{
    return !QTest::qWaitFor([this] { return m_reloads > m_awaitedReloads; }, 150);
}

QVector<PluginHost::Message> PluginHost::takeMessages()
{
    QVector<Message> taken;
    taken.swap(messages);
    return taken;
}

QWidget *PluginHost::widgetFromAnswer(const char *event, const QJsonObject &data, const char *key)
{
    const QVector<Message> answer = ask(event, data);
    const QVariant address =
        answer.isEmpty() ? QVariant() : answer.first().data.value(QLatin1String(key)).toVariant();
    return reinterpret_cast<QWidget *>(quintptr(address.toLongLong()));
}

QWidget *PluginHost::window()
{
    return widgetFromAnswer("clicked", {{"key", "show_garage"}}, "tabWidget");
}

QWidget *PluginHost::settingsPage()
{
    return widgetFromAnswer("send_settings_dialogs", {}, "settingsPagePtr");
}

void PluginHost::showWindow()
{
    QWidget *widget = window();
    widget->show();
    if (!QTest::qWaitForWindowExposed(widget->window()))
        QTest::qFail("The window did not appear", __FILE__, __LINE__);
    awaitReload();
}

QStringList PluginHost::names(const QVector<Message> &messages)
{
    QStringList names;
    for (const Message &message : messages)
        names.append(message.event);
    return names;
}
