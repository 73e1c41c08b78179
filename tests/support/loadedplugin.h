#pragma once

#include "host/plugin/pluginhost.h"
#include "trivexplugininterface.h"

#include <QJsonArray>
#include <QVector>
#include <QWidget>

/// The finished library, loaded as the demo host loads it. Collects the messages of the plug-in.
class LoadedPlugin final : public QObject
{
    Q_OBJECT
public:
    using Message = HostMessage;

    LoadedPlugin();

    TrivexPluginInterface *plugin() const { return m_host.plugin(); }

    void send(const char *event, const QJsonObject &data = {}, const char *module = "host");
    /// Sends the message and returns the messages that the plug-in sent from within the call.
    QVector<Message> ask(const char *event, const QJsonObject &data = {});
    /// Waits for the reload requested before and returns all messages up to then.
    QVector<Message> awaitReload();
    /// Waits 150 ms. True if no reload came that was not awaited.
    bool noFurtherReload();
    QVector<Message> takeMessages();
    /// Fails the program if the library is not unloaded.
    void unload();

    /// The garage window and the settings page, by the addresses that the plug-in sends.
    QWidget *window();
    QWidget *settingsPage();
    /// Shows the window and waits for the reload that this causes.
    void showWindow();

    static QStringList names(const QVector<Message> &messages);

    QVector<Message> messages;

private:
    QWidget *widgetFromAnswer(const char *event, const QJsonObject &data, const char *key);

    PluginHost m_host;
    int m_reloads = 0;
    int m_awaitedReloads = 0;
};
