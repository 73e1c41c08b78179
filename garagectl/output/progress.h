#pragma once

#include <QMutex>
#include <QString>
#include <QWaitCondition>

#include <thread>

/// While it exists, one line on standard error reports the progress. Shows nothing in the first
/// second, and nothing at all where standard error is not a terminal.
class Progress final
{
    Q_DISABLE_COPY(Progress)
public:
    explicit Progress(const QString &task);
    /// Removes the line.
    ~Progress();

    /// What is being done now, from any thread.
    void setTask(const QString &task);

private:
    void show();

    QMutex m_mutex;
    QWaitCondition m_ended;
    QString m_task;
    bool m_hasEnded = false;
    std::thread m_thread;
};
