#pragma once

#include "host/plugin/hostmessage.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class PluginHost;

/// Watches the talk and tells when the plug-in owes no answer and has been quiet for a while.
class AnswerWatch final : public QObject
{
    Q_OBJECT
public:
    explicit AnswerWatch(PluginHost &plugin, QObject *parent = nullptr);

    /// Emits finished() once, as soon as all is quiet, or when an answer stays away for `limitMilliseconds`.
    void finishWhenQuiet(int limitMilliseconds = 60000);

signals:
    void finished(bool allAnswered);

private:
    void onSent(const HostMessage &message);
    void onReceived(const HostMessage &message);
    void restart();
    void finish(bool allAnswered);

    QTimer m_quiet;
    QTimer m_limit;
    QElapsedTimer m_sinceReload;
    qint64 m_reloadDuration = 0;
    bool m_owesReload = false;
    bool m_finishing = false;
};
