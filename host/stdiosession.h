#pragma once

#include "answerwatch.h"
#include "standardlines.h"

#include <QObject>

class PluginHost;

/// Lets another program talk to the plug-in: messages in on standard input, out on standard output, one JSON
/// object a line. Ends some quiet time after the input has ended and all is answered.
class StdioSession final : public QObject
{
    Q_OBJECT
public:
    explicit StdioSession(PluginHost &plugin, QObject *parent = nullptr);

signals:
    void finished(int exitCode);

private:
    void handOver(const QByteArray &line);

    PluginHost &m_plugin;
    AnswerWatch m_watch;
    StandardLines m_input;
    int m_lineNumber = 0;
    bool m_inputWasBad = false;
};
