#pragma once

#include "host/plugin/hostmessage.h"
#include "host/result.h"

#include <QObject>
#include <QPluginLoader>

class TrivexPluginInterface;

/// Loads one plug-in library and connects it to the host's controllers by messages. GUI thread only.
class PluginHost final : public QObject
{
    Q_OBJECT
public:
    explicit PluginHost(QObject *parent = nullptr);
    ~PluginHost() override;

    Result load(const QString &fileName);
    /// Destroys the plug-in and unloads its library. Messages that the plug-in sends meanwhile are still
    /// received. The plug-in's widgets must be detached before.
    Result unload();
    bool isLoaded() const { return m_plugin != nullptr; }
    /// Null unless loaded.
    TrivexPluginInterface *plugin() const { return m_plugin; }
    /// The plug-in's caption on tabs and pages; empty unless loaded.
    QString caption() const;

    /// Calls the plug-in's slot with the message; does nothing unless loaded.
    void send(const QString &event, const QJsonObject &data = {});
    void send(const HostMessage &message);

    /// Path of the library beside this executable, in the build tree or installed; empty if it is missing.
    static QString defaultLibrary();

signals:
    /// Emitted before the plug-in gets the message.
    void sent(const HostMessage &message);
    void received(const HostMessage &message);

private:
    QPluginLoader m_loader;
    TrivexPluginInterface *m_plugin = nullptr;
};
