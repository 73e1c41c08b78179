#include "host/sessions/windowsession.h"

#include "host/terminal/exitcode.h"

WindowSession::WindowSession(DemoHost &host, const DataFolder &folder) : m_window(host, folder)
{
    connect(&m_window, &HostWindow::closed, this, [this] { emit finished(ExitCode::Ok); });
}

void WindowSession::start()
{
    m_window.start();
    m_window.openGarage();
}
