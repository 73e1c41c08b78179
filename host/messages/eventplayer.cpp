#include "host/messages/eventplayer.h"

#include "host/plugin/pluginhost.h"

#include <QFile>
#include <QJsonDocument>

EventPlayer::EventPlayer(PluginHost &plugin, QObject *parent)
    : QObject(parent), m_plugin(plugin), m_watcher(plugin)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &EventPlayer::next);
    connect(&m_watcher, &AnswerWatcher::finished, this, [this](bool allAnswered) {
        m_allAnswered = m_allAnswered && allAnswered;
        m_timer.start(0);
    });
}

Result EventPlayer::load(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return Result::error(tr("cannot read file %1: %2").arg(fileName, file.errorString()));
    m_steps.clear();
    m_position = 0;
    for (int number = 1; !file.atEnd(); ++number) {
        const QByteArray line = file.readLine().trimmed();
        if (!line.isEmpty() && !addStep(line))
            return Result::error(tr("file %1, line %2 is not an event").arg(fileName).arg(number));
    }
    return Result::success();
}

bool EventPlayer::addStep(const QByteArray &line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (object.value(QLatin1String("direction")).toString() == QLatin1String("fromPlugin"))
        return true;
    Step step;
    if (const QJsonValue wait = object.value(QLatin1String("wait")); !wait.isUndefined()) {
        step.kind = wait.isDouble() ? Step::Pause : Step::AwaitAnswer;
        step.milliseconds = std::max(0, wait.toInt());
    } else if (const QJsonValue name = object.value(QLatin1String("screenshot")); name.isString()) {
        step.kind = Step::Screenshot;
        step.name = name.toString();
    } else if (const std::optional<HostMessage> message = HostMessage::fromJsonLine(line)) {
        step.message = *message;
    } else {
        return false;
    }
    m_steps.append(step);
    return true;
}

void EventPlayer::start()
{
    m_timer.start(0);
}

void EventPlayer::cancel()
{
    m_position = int(m_steps.size());
    m_timer.start(0);
}

void EventPlayer::next()
{
    emit progress(std::min(m_position, int(m_steps.size())));
    if (m_position >= m_steps.size()) {
        m_timer.stop();
        emit finished(m_allAnswered);
        return;
    }
    // A copy: a message may open a dialog, whose event loop may call load().
    const Step step = m_steps.at(m_position++);
    perform(step);
}

void EventPlayer::perform(const Step &step)
{
    switch (step.kind) {
    case Step::Send:
        m_timer.start(0); // before send(): a dialog opened by the message must not block the next step
        m_plugin.send(step.message);
        break;
    case Step::Pause:
        m_timer.start(step.milliseconds);
        break;
    case Step::AwaitAnswer:
        m_watcher.finishWhenIdle();
        break;
    case Step::Screenshot:
        emit screenshotWanted(step.name);
        m_timer.start(0);
        break;
    }
}
