#include "host/sessions/windowsession.h"

#include "host/terminal/exitcode.h"

WindowSession::WindowSession(DemoHost &host, const DataFolder &home) : m_window(host, home)
{
    connect(&m_window, &HostWindow::closed, this, [this] { emit finished(ExitCode::Ok); });
}
