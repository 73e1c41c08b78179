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

/// What a check works with: the library, a scratch database known to the last row, and the plug-in's
/// messages. Whatever does not go as it must throws CheckFailed.
class CheckStage final : public QObject
{
    Q_OBJECT
public:
    CheckStage(const QString &library, const HostHome &home);
    ~CheckStage() override;

    QString library() const { return m_library; }
    const HostHome &home() const { return m_home; }

    /// Two cars of one model (car 1 is due, car 2 has an open complaint), an operation, a person.
    void makeDatabase();
    HostConnection &database() { return *m_database; }
    void exec(const QString &statement, const QVariantList &values = {});
    int count(const QString &table, const QString &condition = QStringLiteral("1"));

    void load();
    void unload();
    TrivexPluginInterface &plugin();

    void send(const QString &event, const QJsonObject &data = {});
    /// Sends, and gives what the plug-in sent in direct answer.
    QVector<HostMessage> ask(const QString &event, const QJsonObject &data = {});
    /// The next message of that event; earlier ones of other events are dropped.
    HostMessage await(const QString &event);
    /// Lets the plug-in go on.
    void wait(int milliseconds);
    /// Fails if the plug-in has said, or says within that time, anything.
    void expectSilence(int milliseconds = 300);
    void forgetMessages() { m_messages.clear(); }

    /// The widget at the address, if there is one.
    QWidget &widget(const QJsonValue &address);
    /// The garage window, as a host gets it.
    QWidget &garageWindow();

private:
    const QString m_library;
    const HostHome m_home;
    std::unique_ptr<HostConnection> m_database;
    PluginHost m_plugin;
    QVector<HostMessage> m_messages; // not yet asked for
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
