#pragma once

#include "host/app/hostwindow.h"
#include "host/sessions/hostsession.h"

/// Shows the window with the garage open, until the user closes it.
class WindowSession final : public HostSession
{
    Q_OBJECT
public:
    WindowSession(DemoHost &host, const DataFolder &folder);

    void start() override;

private:
    HostWindow m_window;
};
