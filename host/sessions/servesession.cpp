#include "host/sessions/servesession.h"

#include "host/app/demohost.h"
#include "host/terminal/exitcode.h"

ServeSession::ServeSession(DemoHost &host) : m_host(host)
{
    connect(&m_endSignal, &EndSignal::received, this, [this] { emit finished(ExitCode::Ok); });
}

void ServeSession::start()
{
    // The garage's window is never shown; its plug-in answers all the same.
    m_host.fleet().sendStartSequence();
}
