#pragma once

#include "host/plugin/hostmessage.h"

#include <QObject>
#include <QPluginLoader>

class TrivexPluginInterface;

/// Loads one plug-in library and carries the messages between it and the host's rooms. GUI thread.
class PluginHost final : public QObject
{
    Q_OBJECT
public:
    explicit PluginHost(QObject *parent = nullptr);
    ~PluginHost() override;

    /// An error text, or empty.
    QString load(const QString &fileName);
    /// Destroys the plug-in and lets go of its library; the host must have let go of its pages before.
    void unload();
    bool isLoaded() const { return m_plugin != nullptr; }
    /// Null unless loaded.
    TrivexPluginInterface *plugin() const { return m_plugin; }
    /// How the plug-in calls itself on tabs and pages.
    QString caption() const;

    /// Hands one message to the plug-in.
    void send(const QString &event, const QJsonObject &data = {});
    void send(const HostMessage &message);

    /// Where the library lies beside this executable, in the build tree or installed; empty if nowhere.
    static QString defaultLibrary();

signals:
    /// Emitted before the plug-in gets the message.
    void sent(const HostMessage &message);
    void received(const HostMessage &message);

private:
    QPluginLoader m_loader;
    TrivexPluginInterface *m_plugin = nullptr;
};
