#pragma once

#include "answerwatch.h"
#include "duetable.h"

#include <QObject>

/// Prints the due table of the first reload and is done.
class DuePrinter final : public QObject
{
    Q_OBJECT
public:
    DuePrinter(HostConnection &connection, PluginHost &plugin, QObject *parent = nullptr);

signals:
    void finished(int exitCode);

private:
    DueTable m_table;
    AnswerWatch m_watch;
    QJsonObject m_pending;
};
