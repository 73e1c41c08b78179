#include "host/plugin/answerwatcher.h"

#include "host/plugin/pluginhost.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

constexpr int shortestQuiet = 400; // milliseconds

bool hasRemoteRecords(const QJsonObject &data)
{
    const QByteArray text = data.value(QLatin1String("data")).toString().toUtf8();
    return !QJsonDocument::fromJson(text).array().isEmpty();
}

bool makesReload(const HostMessage &message)
{
    if (message.event == QLatin1String("run_saved_to_db"))
        return true;
    const bool fromRemoteControl = message.event == QLatin1String("remote_control_data")
        && message.data.value(QLatin1String("msg")).toString() == QLatin1String("service_operation_done");
    return (fromRemoteControl || message.event == QLatin1String("remote_service_data"))
        && hasRemoteRecords(message.data);
}

} // namespace

AnswerWatch::AnswerWatch(PluginHost &plugin, QObject *parent) : QObject(parent)
{
    m_quiet.setSingleShot(true);
    m_limit.setSingleShot(true);
    connect(&plugin, &PluginHost::sent, this, &AnswerWatch::onSent);
    connect(&plugin, &PluginHost::received, this, &AnswerWatch::onReceived);
    connect(&m_quiet, &QTimer::timeout, this, [this] { finish(true); });
    connect(&m_limit, &QTimer::timeout, this, [this] { finish(false); });
}

void AnswerWatch::finishWhenQuiet(int limitMilliseconds)
{
    m_finishing = true;
    m_limit.start(limitMilliseconds);
    restart();
}

void AnswerWatch::onSent(const HostMessage &message)
{
    if (makesReload(message)) {
        m_owesReload = true;
        m_sinceReload.start();
    }
    restart();
}

void AnswerWatch::onReceived(const HostMessage &message)
{
    if (message.event == QLatin1String("update_pending_service") && m_owesReload) {
        m_owesReload = false;
        m_reloadDuration = m_sinceReload.elapsed();
    }
    restart();
}

void AnswerWatch::restart()
{
    m_quiet.stop();
    // One answer may belong to an earlier request: the quiet must be longer than a reload takes.
    if (m_finishing && !m_owesReload)
        m_quiet.start(int(std::max<qint64>(shortestQuiet, 2 * m_reloadDuration)));
}

void AnswerWatch::finish(bool allAnswered)
{
    m_finishing = false;
    m_quiet.stop();
    m_limit.stop();
    emit finished(allAnswered);
}
