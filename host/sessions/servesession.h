#pragma once

#include "host/sessions/hostsession.h"
#include "host/terminal/endsignal.h"

class DemoHost;

/// Serves the page of the remote side without a window, until the program is asked to end.
class ServeSession final : public HostSession
{
    Q_OBJECT
public:
    explicit ServeSession(DemoHost &host);

    void start() override;

private:
    DemoHost &m_host;
    EndSignal m_endSignal;
};
