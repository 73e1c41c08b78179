#pragma once

#include "trivexplugininterface.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>
#include <QVector>
#include <QWidget>

/// A host that loads the finished library and knows nothing of it but interface and messages.
class PluginHost final : public QObject
{
    Q_OBJECT
public:
    struct Message
    {
        QString module;
        QString event;
        QJsonObject data;
    };

    PluginHost();
    /// Unloads the library if that was not done before.
    ~PluginHost() override;

    TrivexPluginInterface *plugin() const { return m_plugin; }
    QPluginLoader &loader() { return m_loader; }

    void send(const char *event, const QJsonObject &data = {}, const char *module = "host");
    /// Sends, and gives what the plug-in sent in direct answer.
    QVector<Message> ask(const char *event, const QJsonObject &data = {});
    /// Waits for the reload that was asked for before and gives all messages up to then.
    QVector<Message> awaitReload();
    /// Waits a little and says whether a reload came that was not awaited.
    bool noFurtherReload();
    QVector<Message> takeMessages();
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

    QPluginLoader m_loader;
    TrivexPluginInterface *m_plugin = nullptr;
    int m_reloads = 0;
    int m_awaitedReloads = 0;
};
