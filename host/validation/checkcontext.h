#pragma once

#include "host/database/datafolder.h"
#include "host/plugin/pluginhost.h"
#include "host/validation/check.h"

#include <QJsonArray>
#include <QObject>
#include <QStringList>
#include <QVector>

#include <memory>

class HostConnection;
class QWidget;
class TrivexPluginInterface;

/// The environment of a check: the library, a scratch database with fixed contents, and the plug-in's
/// messages. Functions that find a fault of the plug-in throw CheckFailed.
class CheckContext final : public QObject
{
    Q_OBJECT
public:
    CheckContext(const QString &library, const DataFolder &folder);
    ~CheckContext() override;

    QString library() const { return m_library; }
    const DataFolder &folder() const { return m_folder; }

    /// Two cars of one model (car 1 is due, car 2 has an open complaint), an operation, a person.
    void makeDatabase();
    HostConnection &database() { return *m_database; }
    void exec(const QString &statement, const QVariantList &values = {});
    int count(const QString &table, const QString &condition = QStringLiteral("1"));

    void load();
    void unload();
    TrivexPluginInterface &plugin();

    void send(const QString &event, const QJsonObject &data = {});
    /// Sends the message and returns the messages that the plug-in sent from within the call.
    QVector<HostMessage> ask(const QString &event, const QJsonObject &data = {});
    /// The next message of that event; earlier ones of other events are dropped.
    HostMessage await(const QString &event);
    /// Runs the event loop.
    void wait(int milliseconds);
    /// Fails if the plug-in has sent, or sends within that time, any message.
    void expectSilence(int milliseconds = 300);
    void discardMessages() { m_messages.clear(); }

    /// The widget whose address the message holds under the key.
    QWidget &widget(const HostMessage &message, const char *key);
    /// Requests the garage window as a host does.
    QWidget &garageWindow();

private:
    const QString m_library;
    const DataFolder m_folder;
    std::unique_ptr<HostConnection> m_database;
    PluginHost m_plugin;
    QVector<HostMessage> m_messages; // not yet returned by ask() or await()
};

void expect(bool holds, const QString &reason);
void expectEqual(const QString &what, const QJsonValue &actual, const QJsonValue &expected);
/// The messages are these events, in this order.
void expectEvents(const QVector<HostMessage> &messages, const QStringList &events);
/// The message comes from that module with exactly that data.
void expectMessage(const HostMessage &message, const QString &module, const QJsonObject &data);

/// JSON text that is known to be good.
QJsonObject jsonObject(const char *text);
/// Records as "remote_service_data" carries them.
QJsonObject remoteRecords(const char *arrayText);
