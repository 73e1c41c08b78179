#pragma once

#include "host/plugin/answerwatcher.h"
#include "host/sessions/hostsession.h"
#include "host/terminal/standardinputreader.h"

class DemoHost;

/// Connects another program to the plug-in: messages to the plug-in on standard input, messages of the
/// plug-in on standard output, one JSON object per line. The other program simulates the remote side.
/// Finishes when the input has ended and the plug-in is idle.
class StdioSession final : public HostSession
{
    Q_OBJECT
public:
    explicit StdioSession(DemoHost &host);

    void start() override;

private:
    void sendLine(const QByteArray &line, int number);
    void end(bool allAnswered);

    DemoHost &m_host;
    AnswerWatcher m_watcher;
    StandardInputReader m_input;
    bool m_inputWasBad = false;
};
