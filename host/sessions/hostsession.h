#pragma once

#include <QObject>

/// One kind of run of the program, from the start sequence to an exit code.
class HostSession : public QObject
{
    Q_OBJECT
public:
    virtual void start() = 0;

signals:
    void finished(int exitCode);
};
