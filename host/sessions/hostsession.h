#pragma once

#include <QObject>

/// One way of running the host, from the start sequence to an exit code.
class HostSession : public QObject
{
    Q_OBJECT
public:
    virtual void start() = 0;

signals:
    void finished(int exitCode);
};
