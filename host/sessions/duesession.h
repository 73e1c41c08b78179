#pragma once

#include "host/plugin/answerwatcher.h"
#include "host/sessions/hostsession.h"

class DemoHost;

/// Prints the services that the first reload reports as due.
class DueSession final : public HostSession
{
    Q_OBJECT
public:
    explicit DueSession(DemoHost &host);

    void start() override;

private:
    void print(bool allAnswered);

    DemoHost &m_host;
    AnswerWatcher m_watcher;
    QJsonObject m_pending;
};
