#pragma once

#include "host/plugin/answerwatcher.h"
#include "host/result.h"

#include <QObject>
#include <QTimer>
#include <QVector>

class PluginHost;

/// Plays a file of JSON lines to the plug-in. A line is a message, {"wait":milliseconds}, {"wait":"answer"}
/// (until the plug-in is idle) or {"screenshot":"name"}. Of a saved message
/// log only the messages to the plug-in are played.
class EventPlayer final : public QObject
{
    Q_OBJECT
public:
    explicit EventPlayer(PluginHost &plugin, QObject *parent = nullptr);

    /// Reads the file. The error names the first line that is not a step.
    Result load(const QString &fileName);
    int stepCount() const { return int(m_steps.size()); }
    void start();
    /// Stops before the next step; finished() is still emitted.
    void cancel();

signals:
    void progress(int step);
    void screenshotWanted(const QString &name);
    void finished(bool allAnswered);

private:
    struct Step
    {
        enum Kind { Send, Pause, AwaitAnswer, Screenshot } kind = Send;
        HostMessage message;
        int milliseconds = 0;
        QString name;
    };

    bool addStep(const QByteArray &line);
    void next();
    void perform(const Step &step);

    PluginHost &m_plugin;
    AnswerWatcher m_watcher;
    QTimer m_timer;
    QVector<Step> m_steps;
    int m_position = 0;
    bool m_allAnswered = true;
};
