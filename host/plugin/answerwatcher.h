#pragma once

#include "host/plugin/hostmessage.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class PluginHost;

/// Watches the messages and reports when the plug-in has no request left to answer and has been idle.
class AnswerWatcher final : public QObject
{
    Q_OBJECT
public:
    explicit AnswerWatcher(PluginHost &plugin, QObject *parent = nullptr);

    /// Emits finished(true) once the plug-in is idle, or finished(false) after `limitMilliseconds`.
    void finishWhenIdle(int limitMilliseconds = 60000);

signals:
    void finished(bool allAnswered);

private:
    void onSent(const HostMessage &message);
    void onReceived(const HostMessage &message);
    void restart();
    void finish(bool allAnswered);

    QTimer m_idleTimer;
    QTimer m_limitTimer;
    QElapsedTimer m_sinceReload;
    qint64 m_reloadDuration = 0;
    bool m_awaitsReload = false;
    bool m_finishing = false;
};
