#pragma once

#include "host/plugin/answerwatcher.h"
#include "host/sessions/hostsession.h"
#include "host/terminal/standardinputreader.h"

class DemoHost;

/// Lets another program talk to the plug-in: messages in on standard input, out on standard output, one JSON
/// object a line. The other program plays the remote side. Ends some quiet time after the input has ended and
/// all is answered.
class StdioSession final : public HostSession
{
    Q_OBJECT
public:
    explicit StdioSession(DemoHost &host);

    void start() override;

private:
    void handOver(const QByteArray &line);
    void end(bool allAnswered);

    DemoHost &m_host;
    AnswerWatch m_watch;
    StandardLines m_input;
    int m_lineNumber = 0;
    bool m_inputWasBad = false;
};
