#pragma once

#include "host/app/hostwindow.h"
#include "host/sessions/hostsession.h"

/// Shows the window until the user closes it.
class WindowSession final : public HostSession
{
    Q_OBJECT
public:
    WindowSession(DemoHost &host, const DataFolder &folder);

    void start() override { m_window.start(); }

private:
    HostWindow m_window;
};
