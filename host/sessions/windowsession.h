#pragma once

#include "host/app/hostwindow.h"
#include "host/sessions/hostsession.h"

/// The window, until somebody closes it.
class WindowSession final : public HostSession
{
    Q_OBJECT
public:
    WindowSession(DemoHost &host, const HostHome &home);

    void start() override { m_window.start(); }

private:
    HostWindow m_window;
};
