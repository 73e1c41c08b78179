#include "host/plugin/answerwatcher.h"

#include "host/plugin/pluginhost.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

constexpr int shortestIdleTime = 400; // milliseconds

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

AnswerWatcher::AnswerWatcher(PluginHost &plugin, QObject *parent) : QObject(parent)
{
    m_idleTimer.setSingleShot(true);
    m_limitTimer.setSingleShot(true);
    connect(&plugin, &PluginHost::sent, this, &AnswerWatcher::onSent);
    connect(&plugin, &PluginHost::received, this, &AnswerWatcher::onReceived);
    connect(&m_idleTimer, &QTimer::timeout, this, [this] { finish(true); });
    connect(&m_limitTimer, &QTimer::timeout, this, [this] { finish(false); });
}

void AnswerWatcher::finishWhenIdle(int limitMilliseconds)
{
    m_finishing = true;
    m_limitTimer.start(limitMilliseconds);
    restart();
}

void AnswerWatcher::onSent(const HostMessage &message)
{
    if (makesReload(message)) {
        m_awaitsReload = true;
        m_sinceReload.start();
    }
    restart();
}

void AnswerWatcher::onReceived(const HostMessage &message)
{
    if (message.event == QLatin1String("update_pending_service") && m_awaitsReload) {
        m_awaitsReload = false;
        m_reloadDuration = m_sinceReload.elapsed();
    }
    restart();
}

void AnswerWatcher::restart()
{
    m_idleTimer.stop();
    // The answer may belong to an earlier request: the idle time must be longer than a reload.
    if (m_finishing && !m_awaitsReload)
        m_idleTimer.start(int(std::max<qint64>(shortestIdleTime, 2 * m_reloadDuration)));
}

void AnswerWatcher::finish(bool allAnswered)
{
    m_finishing = false;
    m_idleTimer.stop();
    m_limitTimer.stop();
    emit finished(allAnswered);
}
